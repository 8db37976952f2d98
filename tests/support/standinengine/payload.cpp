#include "payload.h"

#include "product/product.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kFileSize = 8000;

/// With '|' between the names.
constexpr QStringView kSample =
    u"libEGL.dll|libGLESv2.dll|Qt6Core.dll|Qt6Gui.dll|Qt6Widgets.dll|Qt6Network.dll|"
    u"Qt6Svg.dll|Qt6OpenGL.dll|pdfium.dll|glew32.dll|glfw3.dll|platforms/qwindows.dll|"
    u"styles/qmodernwindowsstyle.dll|imageformats/qgif.dll|imageformats/qico.dll|"
    u"imageformats/qjpeg.dll|imageformats/qsvg.dll|iconengines/qsvgicon.dll|"
    u"tls/qschannelbackend.dll|config/defaults.ini|config/hotkeys.json|"
    u"config/pcb_themes_builtin.json|config/schematic_themes_builtin.json|"
    u"symbols/ieee.lib|symbols/analog.lib|symbols/connectors.lib|symbols/logic.lib|"
    u"symbols/mcu.lib|symbols/passives.lib|symbols/power.lib|footprints/0402.mod|"
    u"footprints/0603.mod|footprints/sot-23.mod|footprints/tqfp-44.mod|"
    u"footprints/usb-c.mod|examples/blinker/blinker.sch|examples/blinker/blinker.pcb|"
    u"examples/usb sensor/usb sensor.sch|examples/usb sensor/usb sensor.pcb|"
    u"translations/varnel_de.qm|translations/varnel_fr.qm|translations/varnel_ja.qm|"
    u"help/index.md|help/style.css|LICENSE.txt|THIRD-PARTY.txt|README.txt";

} // namespace

QStringList payload(std::optional<int> count)
{
    QStringList files { Product::kExecutable.toString() };
    if (!count)
        return files + kSample.toString().split(u'|');
    for (int i = 1; i < *count; ++i) {
        files << u"data/%1/file-%2.bin"_s.arg(i / 1000, 6, 10, QChar(u'0'))
                     .arg(i, 6, 10, QChar(u'0'));
    }
    return files;
}

QByteArray contentOf(const QString &file)
{
    const QByteArray path = file.toUtf8();
    if (path.endsWith(".json"))
        return "{ \"file\": \"" + path + "\" }\n";
    return QByteArray(path + '\n').repeated(kFileSize / path.size());
}
