#pragma once

#include <QString>

inline constexpr QStringView kUninstaller = u"/unins000.exe"; ///< below the install folder

// The installed product's entry in the list of installed programs. The file that the environment
// variable VARNEL_REGISTRY_JSON names stands for the registry; without it there is none, and all of
// this does nothing.

/// Adds or renews the machine-wide entry; everything else in the file stays. Throws FileError, also
/// when the file holds no JSON object: text of another kind is not overwritten.
void registerProduct(const QString &folder);

/// Removes the machine-wide entry, if there is one. Throws as above.
void unregisterProduct();
