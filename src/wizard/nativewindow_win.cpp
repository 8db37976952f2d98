#include "wizard/nativewindow.h"

#include <QWidget>
#include <QWindow>

void presentWindow(QWidget &window)
{
    // The task bar minimises only a window with a minimise box, which Qt leaves out of a window
    // without a frame. Qt asks its own flags when it opens the system menu, so it has to know.
    QWindow *handle = window.windowHandle();
    handle->setFlags(handle->flags() | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint);
    window.raise();
    window.activateWindow();
}
