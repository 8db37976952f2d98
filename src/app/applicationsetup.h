#pragma once

/// Gives the application object what every window of it relies on: names, icon, fonts, theme, and
/// how it ends.
void setUpApplication();
