#include "files/elevation.h"

#include <qt_windows.h>

bool isElevated()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return true; // the caller then trusts less of its environment
    TOKEN_ELEVATION elevation {};
    DWORD size = 0;
    const bool isKnown =
        GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
    CloseHandle(token);
    return !isKnown || elevation.TokenIsElevated;
}
