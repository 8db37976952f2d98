#include "wizard/nativewindow.h"

void presentWindow(QWidget &)
{
    // A new window comes to the front by itself, and its window manager can minimise it.
}
