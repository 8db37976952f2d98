#include "files.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace standin {

fs::path toPath(std::string_view utf8)
{
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string toUtf8(const fs::path &path)
{
    const std::u8string text = fs::path(path).make_preferred().u8string();
    return std::string(text.begin(), text.end());
}

std::optional<std::string> readFile(const fs::path &file)
{
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        return {};
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return {};
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void writeFile(const fs::path &file, std::string_view content)
{
    errno = 0;
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream) {
        const int code = errno != 0 ? errno : EIO;
        throw FileError("Setup was unable to write the file \"" + toUtf8(file)
                        + "\": " + std::generic_category().message(code) + ".");
    }
}

void replaceFile(const fs::path &file, std::string_view content)
{
    fs::path draft = file;
    draft += ".new";
    writeFile(draft, content);
    std::error_code error;
    fs::rename(draft, file, error);
    if (error) {
        throw FileError("Setup was unable to replace the file \"" + toUtf8(file)
                        + "\": " + error.message() + ".");
    }
}

void appendLine(const fs::path &file, std::string_view line)
{
    // One write for the whole line, so that two processes never mix theirs.
    const std::string whole = std::string(line) + '\n';
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    stream.write(whole.data(), static_cast<std::streamsize>(whole.size()));
}

} // namespace standin
