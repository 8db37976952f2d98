#pragma once

#include <QString>

/// Everything that differs between systems: platform_unix.cpp and platform_win.cpp define it.
namespace platform {

/// Makes the stand-in for the installed application, which notes each of its launches. Throws
/// FileError.
void writeApplication(const QString &file);

/// Does nothing where the system has none.
void makeFifo(const QString &file);

void ignoreTermination();

/// A closed pipe then shows as a failed write instead of ending the process.
void ignoreBrokenPipes();

/// Whether crash() knows how to die of it: a number, or a name such as SEGV or SIGSEGV.
[[nodiscard]] bool isSignal(const QString &signal);

/// Ends this process the way the signal does, without a core file.
[[noreturn]] void crash(const QString &signal);

/// Stops this process until another one continues it.
void pause();

/// Starts a second process with the same arguments and standard channels, and returns its number.
/// In the second process it returns 0, as soon as this one has ended. Nothing may have been done
/// before; `duty` tells several such calls apart.
[[nodiscard]] qint64 splitOff(const QByteArray &duty);

} // namespace platform
