#pragma once

#include <QIcon>

/// The mark as a window icon in every size that a desktop asks for; empty if its drawing cannot be
/// read.
[[nodiscard]] QIcon applicationIcon();
