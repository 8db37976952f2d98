#pragma once

#include <QIcon>

/// The mark as a window icon, in all sizes that desktops use; null if the drawing cannot be read.
[[nodiscard]] QIcon applicationIcon();
