#pragma once

/// The codes that the engine chooses by itself; a scenario can make it end with any other.
namespace standin::exitcode {

inline constexpr int kSuccess = 0;
inline constexpr int kCouldNotStart = 1;
inline constexpr int kPreparingFailed = 3;
inline constexpr int kFatalError = 4;
inline constexpr int kCancelledDuringSetup = 5; ///< "Abort" chosen in a suppressed box.

/// Not a setup's code: the scenario could not be read, and a test would wait for nothing.
inline constexpr int kBadScenario = 64;

} // namespace standin::exitcode
