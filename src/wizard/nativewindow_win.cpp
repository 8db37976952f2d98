#include "wizard/nativewindow.h"

#include <QWidget>

#include <windows.h>

void presentWindow(QWidget &window)
{
    // Qt leaves the minimise box out of a window without a frame, and the task bar asks for it.
    const HWND handle = reinterpret_cast<HWND>(window.winId());
    SetWindowLongPtrW(handle, GWL_STYLE,
                      GetWindowLongPtrW(handle, GWL_STYLE) | WS_MINIMIZEBOX | WS_SYSMENU);
    window.raise();
    window.activateWindow();
}
