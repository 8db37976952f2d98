#include "wizard/nativewindow.h"

#include <QWidget>

#include <windows.h>

void presentWindow(QWidget &window)
{
    // Qt leaves the minimise box out of a window without a frame, and the task bar asks for it.
    const HWND handle = reinterpret_cast<HWND>(window.winId());
    SetWindowLongPtrW(handle, GWL_STYLE,
                      GetWindowLongPtrW(handle, GWL_STYLE) | WS_MINIMIZEBOX | WS_SYSMENU);
    // Without this, Windows goes on with what it has noted of the old style.
    SetWindowPos(handle, nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    window.raise();
    window.activateWindow();
}
