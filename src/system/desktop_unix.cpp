#include "system/desktop.h"

Desktop &systemDesktop()
{
    static Desktop desktop;
    return desktop;
}
