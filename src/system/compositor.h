#pragma once

/// True if the desktop blends the transparent parts of windows with what is behind them. Where it
/// does not, they are black, so a window has to cut them out of its shape.
[[nodiscard]] bool desktopBlendsWindows();
