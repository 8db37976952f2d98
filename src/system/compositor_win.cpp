#include "system/compositor.h"

bool desktopBlendsWindows()
{
    return true; // since Windows 8 there is no way to turn it off
}
