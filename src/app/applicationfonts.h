#pragma once

/// Registers the fonts in the program's resources. A font that fails to load is skipped.
void registerApplicationFonts();
