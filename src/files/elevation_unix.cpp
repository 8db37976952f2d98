#include "files/elevation.h"

bool isElevated()
{
    return false;
}
