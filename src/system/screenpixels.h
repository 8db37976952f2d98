#pragma once

#include <QSize>

#include <optional>

/// Size of the primary screen in physical pixels; nothing where the system does not report it. Qt's
/// own sizes are already divided by the scale factor and rounded.
[[nodiscard]] std::optional<QSize> primaryScreenPixels();
