#pragma once

/// Sets up the application object before the first window is made: names, icon, fonts, theme, and
/// that closing the last window does not quit.
void setUpApplication();
