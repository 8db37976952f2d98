#pragma once

#include <QString>

#include <functional>

class GuardedFile;
struct Bundle;

/// What the engine is called in its own folder.
inline constexpr QStringView kUnpackedEngine = u"VarnelEngine.exe";

/// The sentence for a download that was cut off or altered.
[[nodiscard]] QString damagedSentence();

/// A sentence with what the system says and how much room `size` bytes take in the temp folder.
[[nodiscard]] QString unpackFailure(const QString &reason, qint64 size);

/// Writes the engine that `program` carries to the new file `target`, in small pieces, holds that
/// file in `held`, and only then compares its SHA-256: so what is compared is what will be started.
/// `pause` is called between two pieces and may block; false stops the unpacking.
///
/// The result is empty on success, and else a sentence for the user; `target` is not there then.
[[nodiscard]] QString unpackEngine(const QString &program, const Bundle &bundle,
                                   const QString &target, GuardedFile &held,
                                   const std::function<bool()> &pause);
