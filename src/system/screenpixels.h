#pragma once

#include <QSize>

#include <optional>

/// Size of the primary screen in its own pixels, as the system tells it; nothing where it does not.
/// Qt tells sizes only after it has divided them by the scale and rounded them.
[[nodiscard]] std::optional<QSize> primaryScreenPixels();
