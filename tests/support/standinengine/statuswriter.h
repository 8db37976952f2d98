#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

/// What stands at the status file's path.
enum class StatusPlace {
    Normal,
    Directory,
    Deleted, ///< There until half of the run is done, then gone for good.
    Fifo,
    Never,
};

/// How the status file differs from an honest one.
struct StatusQuirks
{
    StatusPlace place = StatusPlace::Normal;
    bool byteOrderMark = false;
    bool carriageReturns = false;
    bool finalNewline = true;
    bool half = false;
    bool torn = false; ///< Dies over it when half of the run is done.
    bool section = true;
    bool upperSection = false;
    bool blanks = false;

    /// Played one per write instead of the honest value; the last one stays.
    std::vector<std::string> progress;
    std::vector<std::string> files;
    std::vector<std::string> texts;
};

/// The small ini file that the wizard polls. It is rewritten in place, so a reader may meet it
/// empty; a failed write is forgotten, because a setup must not fail for want of an audience.
class StatusWriter
{
public:
    /// An empty path writes nothing.
    StatusWriter(std::filesystem::path file, StatusQuirks quirks);

    /// Percent from 0 to 100.
    void write(double percent, std::string_view file, std::string_view text);

private:
    [[nodiscard]] std::string content(double percent, std::string_view file,
                                      std::string_view text) const;

    std::filesystem::path m_file;
    StatusQuirks m_quirks;
    std::size_t m_writes = 0;
};

} // namespace standin
