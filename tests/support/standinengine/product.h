#pragma once

#include <array>
#include <string_view>

/// What the stand-in engine installs, and where the system keeps the record of it.
namespace standin::product {

inline constexpr std::string_view kName = "Varnel Schematics";
inline constexpr std::string_view kVersion = "1.6.9";
inline constexpr std::string_view kPublisher = "Varnel Solutions Team";
inline constexpr std::string_view kMainExecutable = "VarnelSolutions.exe";
inline constexpr std::string_view kUninstaller = "unins000.exe";
inline constexpr std::string_view kUninstallList = "unins000.dat";
inline constexpr std::string_view kDesktopTask = "desktopicon";

/// The machine-wide record comes first: it is the one that an installation writes.
inline constexpr std::array<std::string_view, 3> kRegistryKeys = {
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
    R"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\Windows\CurrentVersion\Uninstall\)"
    R"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)",
    R"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
    R"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)",
};

} // namespace standin::product
