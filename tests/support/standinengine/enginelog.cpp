#include "enginelog.h"

#include "text.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <string>

namespace standin {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kPaddingBlock = 1 << 20;

/// In UTC, which is what the log's first line promises.
std::string timeStamp()
{
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto today = floor<days>(now);
    const year_month_day date(today);
    const hh_mm_ss time(now - today);
    std::array<char, 64> text = {};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d.%03d",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()),
                  static_cast<int>(time.subseconds().count()));
    return text.data();
}

std::string entry(std::string_view text)
{
    const std::string start = timeStamp() + "   ";
    const std::string indent = std::string(kLineEnd) + std::string(start.size(), ' ');
    return start + replaced(std::string(text), "\n", indent) + std::string(kLineEnd);
}

} // namespace

void EngineLog::open(const std::filesystem::path &file)
{
    m_stream.open(file, std::ios::binary | std::ios::trunc);
    write("\xEF\xBB\xBF");
    line("Log opened. (Time zone: UTC+00:00)");
}

void EngineLog::close()
{
    line("Log closed.");
    m_stream.close();
}

void EngineLog::line(std::string_view text)
{
    write(entry(text));
}

void EngineLog::messageBox(std::string_view text)
{
    line("Defaulting to OK for suppressed message box (OK):\n" + std::string(text));
}

void EngineLog::padTo(std::uintmax_t bytes)
{
    const std::string sample = entry("-- File entry --")
        + entry("Dest filename: padding/component library/part.lib")
        + entry("Time stamp of our file: 2026-10-01 12:00:00.000") + entry("Installing the file.")
        + entry("Successfully installed the file.");
    std::string block;
    while (block.size() < kPaddingBlock)
        block += sample;
    while (m_stream && m_size + block.size() <= bytes)
        write(block);
    while (m_stream && m_size < bytes)
        line("Leaving temporary file in place.");
}

void EngineLog::write(std::string_view bytes)
{
    if (!m_stream.is_open())
        return;
    // Flushed each time, because somebody reads along.
    m_stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
    m_size += bytes.size();
}

} // namespace standin
