#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace standin {

/// The log of a run, in the form a real setup writes it: UTF-8 with byte-order mark, CRLF, each
/// entry with a time stamp in front and the further lines of an entry indented by as many blanks.
/// Without a file, and after a failed write, it takes everything and writes nothing.
class EngineLog
{
public:
    void open(const std::filesystem::path &file);
    void close();

    /// One entry; a line feed in the text begins an indented line.
    void line(std::string_view text);

    /// A box that a silent run does not show.
    void messageBox(std::string_view text);

    /// Fills the log with entries like those of copied files until it has at least that size.
    void padTo(std::uintmax_t bytes);

private:
    void write(std::string_view bytes);

    std::ofstream m_stream;
    std::uintmax_t m_size = 0;
};

} // namespace standin
