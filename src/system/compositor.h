#pragma once

/// True if the desktop blends the transparent parts of windows with what is behind them; where it
/// does not, they are black, and a window had better leave them out of its shape.
[[nodiscard]] bool desktopBlendsWindows();
