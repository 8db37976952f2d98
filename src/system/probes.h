#pragma once

#include "system/requirements.h"

#include <QList>

/// Reads this machine and judges it, always nine rows in the same order. `destinationPath` is where
/// the disk space is wanted; it need not exist.
[[nodiscard]] QList<CheckResult> runSystemChecks(const QString &destinationPath);

/// The disk space row alone.
[[nodiscard]] CheckResult checkDiskSpace(const QString &destinationPath);

/// True if the system will keep programs that it does not know from starting.
[[nodiscard]] bool isSmartAppControlOn();

/// True if both libraries of the Visual C++ runtime are in the system's folder.
[[nodiscard]] bool vcRuntimePresent();

/// The same of any folder; an empty one has none.
[[nodiscard]] bool hasVcRuntime(const QString &folder);
