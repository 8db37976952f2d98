#pragma once

/// Registers the fonts that the program brings along. One that fails to load is done without.
void registerApplicationFonts();
