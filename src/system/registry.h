#pragma once

#include <QVariant>

/// Reads one value of the registry; an invalid variant if the key or the value is not there or
/// cannot be read. Never creates a key.
///
/// `keyPath` is the full path with back-slashes, a root and its first key at least
/// ("HKEY_LOCAL_MACHINE\SOFTWARE\…"). Where there is no registry, the JSON file named by the
/// environment variable VARNEL_REGISTRY_JSON stands for it: an object of full key paths, each an
/// object of value names with texts or numbers. Unset, the registry is empty.
[[nodiscard]] QVariant readRegistryValue(const QString &keyPath, const QString &name);
