#pragma once

#include <QString>

/// The sentence for the user that an exit code of the setup engine stands for. Codes 1 to 8 are the
/// documented ones; every other code, 0 and negative ones included, gets a sentence with the
/// number.
[[nodiscard]] QString exitCodeMessage(int exitCode);
