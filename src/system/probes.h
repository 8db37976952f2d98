#pragma once

#include "system/requirements.h"

#include <QList>

/// Checks this machine; always nine rows in the same order. The disk space is that of the volume of
/// `destinationPath`, which need not exist.
[[nodiscard]] QList<CheckResult> runSystemChecks(const QString &destinationPath);

/// The disk space row alone.
[[nodiscard]] CheckResult checkDiskSpace(const QString &destinationPath);

/// True if the system refuses to start programs that it does not know.
[[nodiscard]] bool isSmartAppControlOn();

/// True if both libraries of the Visual C++ runtime are in the system's folder.
[[nodiscard]] bool vcRuntimePresent();

/// The same for any folder; false for an empty path.
[[nodiscard]] bool hasVcRuntime(const QString &folder);
