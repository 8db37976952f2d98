#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A program may carry the setup engine behind its own image, as the download does. tools/bundle
/// puts it there and writes where it lies into a marker inside the image, so that a signature
/// covers both, and so that a program that was cut off still knows what it should have.

/// Where the engine lies in the program's file, and what it must be.
struct Bundle
{
    qint64 offset = 0; ///< in bytes
    qint64 size = 0; ///< in bytes
    QByteArray sha256; ///< of the engine, 32 bytes
};

/// What a marker of 64 bytes says: 16 bytes that name it, offset and size in 8 bytes each, the
/// smallest first, and the SHA-256. Empty if nothing is carried, which is a marker with neither
/// offset nor size.
[[nodiscard]] std::optional<Bundle> parseBundleMarker(QByteArrayView marker);

/// What this program's own marker says.
[[nodiscard]] std::optional<Bundle> carriedBundle();

/// Whether the file `program` is as long as it must be to have all of `bundle` and its signature.
/// Reads the file's first 4 KiB and nothing else.
[[nodiscard]] bool isComplete(const QString &program, const Bundle &bundle);
