#include "wizard/sessionend.h"

std::optional<bool> sessionMayEnd()
{
    return {}; // windows.session asks
}
