#pragma once

#include <filesystem>
#include <string>

/// The installed product's entry in the list of installed programs. The file that the environment
/// variable VARNEL_REGISTRY_JSON names stands for the registry; without it there is none, and all
/// of this does nothing.
namespace standin {

/// Where an earlier run installed the product, empty when unknown.
[[nodiscard]] std::filesystem::path registeredFolder();

/// Adds or renews the machine-wide entry; everything else in the file stays. Throws FileError, also
/// when the file holds no JSON object: somebody else's text is not overwritten.
void registerProduct(const std::filesystem::path &folder);

/// Removes the entry under the given full key path, if there is one. Throws as above.
void unregisterProduct(const std::string &key);

} // namespace standin
