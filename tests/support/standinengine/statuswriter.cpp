#include "statuswriter.h"

#include "files.h"
#include "platform.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace standin {

namespace {

std::string oneDecimal(double number)
{
    std::array<char, 32> text = {};
    std::snprintf(text.data(), text.size(), "%.1f", number);
    return text.data();
}

std::string playedOr(const std::vector<std::string> &played, std::size_t turn,
                     std::string_view honest)
{
    return played.empty() ? std::string(honest) : played[std::min(turn, played.size() - 1)];
}

} // namespace

StatusWriter::StatusWriter(fs::path file, StatusQuirks quirks)
    : m_file(std::move(file)), m_quirks(std::move(quirks))
{}

void StatusWriter::write(double percent, std::string_view file, std::string_view text)
{
    if (m_file.empty())
        return;
    std::error_code ignored;
    switch (m_quirks.place) {
    case StatusPlace::Directory:
        fs::create_directory(m_file, ignored);
        return;
    case StatusPlace::Fifo:
        // Never opened: that would wait for a reader.
        platform::makeFifo(m_file);
        return;
    case StatusPlace::Never:
        return;
    case StatusPlace::Deleted:
        if (percent >= 50) {
            fs::remove(m_file, ignored);
            return;
        }
        break;
    case StatusPlace::Normal:
        break;
    }
    if (m_quirks.torn && percent >= 50) {
        const std::string whole = content(percent, file, text);
        std::ofstream stream(m_file, std::ios::binary | std::ios::trunc);
        stream << whole.substr(0, whole.size() / 2) << std::flush;
        platform::crash("KILL");
    }
    try {
        writeFile(m_file, content(percent, file, text));
    } catch (const FileError &) {
        // See the class comment.
    }
    ++m_writes;
}

std::string StatusWriter::content(double percent, std::string_view file,
                                  std::string_view text) const
{
    const std::string_view equals = m_quirks.blanks ? " = " : "=";
    const auto line = [equals](std::string_view key, const std::string &value) {
        return std::string(key).append(equals) + value + '\n';
    };
    std::string whole;
    if (m_quirks.section)
        whole += m_quirks.upperSection ? "[STATUS]\n" : "[status]\n";
    whole += line("progress", playedOr(m_quirks.progress, m_writes, oneDecimal(percent)));
    whole += line("file", playedOr(m_quirks.files, m_writes, file));
    whole += line("status", playedOr(m_quirks.texts, m_writes, text));

    if (!m_quirks.finalNewline)
        whole.pop_back();
    if (m_quirks.carriageReturns)
        whole = replaced(std::move(whole), "\n", "\r\n");
    if (m_quirks.byteOrderMark)
        whole.insert(0, "\xEF\xBB\xBF");
    if (m_quirks.half)
        whole.resize(whole.size() / 2);
    return whole;
}

} // namespace standin
