#pragma once

#include <optional>

/// Asks this program, as a shutdown does, whether the session may end; nothing where that can be
/// asked only from outside.
[[nodiscard]] std::optional<bool> sessionMayEnd();
