#pragma once

#include <QString>

/// What the system's list of installed programs says about an installed copy, and where a new copy
/// goes. There are no errors here: what cannot be read counts as not found and is an empty text.

/// First non-empty value of `name` in the product's uninstall entry, trimmed: machine-wide, then
/// the machine's 32-bit view, then the user's own.
[[nodiscard]] QString readUninstallValue(const QString &name);

/// Version of the installed copy, as it is recorded.
[[nodiscard]] QString installedVersion();

/// Whether the installed copy has a higher version than this program. False without one, or if what
/// is recorded does not begin with a number.
[[nodiscard]] bool isNewerInstalled();

/// Folder of the installed copy, with native separators and none at the end. It need not exist.
[[nodiscard]] QString installLocation();

/// Whether `folder` is the recorded folder of the installed copy.
[[nodiscard]] bool isInstallFolder(const QString &folder);

/// Folder of the installed copy as an update leaves it, with native separators: `recorded`, or the
/// product's folder in it where that is the root of a drive.
[[nodiscard]] QString updateFolder(const QString &recorded);

/// True if an installed copy is recorded and its folder exists.
[[nodiscard]] bool isInstalled();

/// The installed copy's uninstaller, with native separators; empty if what is recorded does not
/// exist. Without a recorded command it is looked for in the install folder.
[[nodiscard]] QString uninstallerPath();

/// Where setup puts the uninstaller of a copy in `folder`.
[[nodiscard]] QString uninstallerIn(const QString &folder);

/// Where a fresh copy goes unless the user chooses otherwise, with native separators.
[[nodiscard]] QString defaultInstallDir();
