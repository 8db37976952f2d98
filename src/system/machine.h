#pragma once

#include <QString>

#include <optional>

/// Physical memory in bytes; nothing if the system does not report it.
[[nodiscard]] std::optional<quint64> totalMemory();

/// Processor name where it is not found in the registry; empty where it is.
[[nodiscard]] QString processorName();

/// Folder of the system's own libraries; empty where there is none.
[[nodiscard]] QString systemFolder();

/// True if the user has turned off the desktop's animations; false where there is no such setting.
[[nodiscard]] bool desktopPrefersReducedMotion();
