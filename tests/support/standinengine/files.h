#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

/// Files by UTF-8 name. Paths travel as UTF-8 text everywhere outside std::filesystem, because the
/// status file, the log and the registry file are UTF-8 on every system.
namespace standin {

/// Something on disk that could not be made; what() is a sentence for a message box.
struct FileError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

[[nodiscard]] std::filesystem::path toPath(std::string_view utf8);

/// With the separators of the system.
[[nodiscard]] std::string toUtf8(const std::filesystem::path &path);

/// Nothing if the file is not there or cannot be read.
[[nodiscard]] std::optional<std::string> readFile(const std::filesystem::path &file);

/// Creates or overwrites in place. Throws FileError.
void writeFile(const std::filesystem::path &file, std::string_view content);

/// Puts the whole content there or leaves the old file alone. Throws FileError.
void replaceFile(const std::filesystem::path &file, std::string_view content);

/// Failure is silent: used for what tests read, never for what is installed.
void appendLine(const std::filesystem::path &file, std::string_view line);

} // namespace standin
