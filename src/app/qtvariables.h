#pragma once

/// Removes every variable whose name begins with QT_, in any letter case, from the environment of
/// this process. Qt writes files, changes the window and loads plug-ins as they say.
void removeQtVariables();
