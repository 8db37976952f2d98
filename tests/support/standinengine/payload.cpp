#include "payload.h"

#include "product.h"

#include <cstdint>
#include <string_view>

namespace standin {

namespace {

constexpr std::size_t kTinyFile = 40;
constexpr std::size_t kFilesPerFolder = 1000;

std::string sixDigits(std::size_t number)
{
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 6 ? 6 - digits.size() : 0, '0') + digits;
}

bool isText(std::string_view path)
{
    constexpr std::string_view kTextEndings[] = { ".txt", ".lib", ".mod", ".sch",
                                                  ".pcb", ".md",  ".ini", ".css" };
    for (const std::string_view ending : kTextEndings) {
        if (path.ends_with(ending))
            return true;
    }
    return false;
}

std::string text(const PayloadFile &file)
{
    std::string content;
    for (int line = 1; content.size() < file.size; ++line)
        content += file.path + ", line " + std::to_string(line) + '\n';
    return content;
}

std::string noise(const PayloadFile &file)
{
    std::uint32_t state = 2166136261;
    for (const char c : file.path)
        state = (state ^ static_cast<unsigned char>(c)) * 16777619;
    std::string content(file.size, '\0');
    for (char &byte : content) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return content;
}

} // namespace

std::vector<PayloadFile> samplePayload()
{
    return {
        { std::string(product::kMainExecutable), 0 },
        { "libEGL.dll", 24000 },
        { "libGLESv2.dll", 96000 },
        { "Qt6Core.dll", 180000 },
        { "Qt6Gui.dll", 160000 },
        { "Qt6Widgets.dll", 140000 },
        { "Qt6Network.dll", 60000 },
        { "Qt6Svg.dll", 30000 },
        { "Qt6OpenGL.dll", 42000 },
        { "pdfium.dll", 120000 },
        { "glew32.dll", 36000 },
        { "glfw3.dll", 22000 },
        { "platforms/qwindows.dll", 48000 },
        { "styles/qmodernwindowsstyle.dll", 18000 },
        { "imageformats/qgif.dll", 9000 },
        { "imageformats/qico.dll", 9000 },
        { "imageformats/qjpeg.dll", 26000 },
        { "imageformats/qsvg.dll", 9000 },
        { "iconengines/qsvgicon.dll", 9000 },
        { "tls/qschannelbackend.dll", 15000 },
        { "config/defaults.ini", 600 },
        { "config/hotkeys.json", 900 },
        { "config/pcb_themes_builtin.json", 4200 },
        { "config/schematic_themes_builtin.json", 3800 },
        { "symbols/ieee.lib", 12000 },
        { "symbols/analog.lib", 9500 },
        { "symbols/connectors.lib", 8800 },
        { "symbols/logic.lib", 11000 },
        { "symbols/mcu.lib", 15000 },
        { "symbols/passives.lib", 5200 },
        { "symbols/power.lib", 6100 },
        { "footprints/0402.mod", 700 },
        { "footprints/0603.mod", 700 },
        { "footprints/sot-23.mod", 900 },
        { "footprints/tqfp-44.mod", 2400 },
        { "footprints/usb-c.mod", 1800 },
        { "examples/blinker/blinker.sch", 3000 },
        { "examples/blinker/blinker.pcb", 5000 },
        { "examples/usb sensor/usb sensor.sch", 4200 },
        { "examples/usb sensor/usb sensor.pcb", 7600 },
        { "translations/varnel_de.qm", 5400 },
        { "translations/varnel_fr.qm", 5600 },
        { "translations/varnel_ja.qm", 6200 },
        { "help/index.md", 1500 },
        { "help/style.css", 800 },
        { "LICENSE.txt", 2500 },
        { "THIRD-PARTY.txt", 6000 },
        { "README.txt", 500 },
    };
}

std::vector<PayloadFile> numberedPayload(std::size_t count)
{
    std::vector<PayloadFile> files;
    files.reserve(count);
    files.push_back({ std::string(product::kMainExecutable), 0 });
    for (std::size_t i = 1; i < count; ++i) {
        files.push_back(
            { "data/" + sixDigits(i / kFilesPerFolder) + "/file-" + sixDigits(i) + ".bin",
              kTinyFile });
    }
    return files;
}

std::string contentOf(const PayloadFile &file)
{
    if (file.path.ends_with(".json"))
        return "{ \"file\": \"" + file.path + "\" }\n";
    return isText(file.path) ? text(file) : noise(file);
}

} // namespace standin
