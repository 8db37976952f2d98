// What Windows' loader reads before it looks for the libraries that the program imports. GNU ld
// knows nothing of it: tools/windows/add-load-configuration finds it by its section and enters it
// in the header.

#include <cstdint>

namespace {

/// As far as the fields that Windows 8.1 knew, which is more than is needed.
struct LoadConfiguration
{
    std::uint32_t size;
    std::uint8_t defaults[74]; ///< heaps, locks, processors
    std::uint16_t dependentLoadFlags;
    std::uint8_t noGuards[68]; ///< security cookie, control flow guard
};
static_assert(sizeof(LoadConfiguration) == 148);

constexpr std::uint16_t kSystemFolderOnly = 0x800; // LOAD_LIBRARY_SEARCH_SYSTEM32

} // namespace

extern "C" [[gnu::section(".ldcfg"), gnu::used]] const LoadConfiguration _load_config_used {
    sizeof(LoadConfiguration), {}, kSystemFolderOnly, {}
};
