#pragma once

/// Whether this process has administrator rights that the user's other programs lack; false away
/// from Windows, where nothing starts it with more rights than its user's.
[[nodiscard]] bool isElevated();
