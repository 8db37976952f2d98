#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace standin {

/// What an installation has made, kept beside the uninstaller: nothing else may be removed.
struct UninstallList
{
    std::filesystem::path folder;
    std::vector<std::filesystem::path> files;
    std::vector<std::filesystem::path> folders; ///< Only those that were not there before.
    std::vector<std::filesystem::path> shortcuts;
    std::string registryKey;

    /// Takes over what an earlier version left, so that an update forgets nothing.
    void add(const UninstallList &earlier);
};

/// Nothing if there is no list or it cannot be understood.
[[nodiscard]] std::optional<UninstallList> readUninstallList(const std::filesystem::path &file);

/// Throws FileError.
void writeUninstallList(const std::filesystem::path &file, const UninstallList &list);

} // namespace standin
