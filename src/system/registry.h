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

/// A text value, trimmed; empty if there is none or if the value is no text.
[[nodiscard]] QString readRegistryText(const QString &keyPath, const QString &name);

/// A number, also one that is kept as text; 0 if there is none.
[[nodiscard]] int readRegistryInt(const QString &keyPath, const QString &name);
