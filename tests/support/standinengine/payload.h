#pragma once

#include <QStringList>

#include <optional>

/// The files of the application, as paths below the install folder with '/' between the parts; the
/// executable first. Without a count some four dozen in folders, like those of a real application.
[[nodiscard]] QStringList payload(std::optional<int> count);

/// The same on every run.
[[nodiscard]] QByteArray contentOf(const QString &file);
