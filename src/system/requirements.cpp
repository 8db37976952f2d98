#include "system/requirements.h"

#include "product/product.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kFirstWindows11Build = 22000;
constexpr quint64 kMemoryLimit = 0xFFFF'FFFF; // one byte less than 4 GiB

const QString kMissing = u"Missing — will install"_s;

} // namespace

CheckResult judgeOperatingSystem(const OperatingSystem &system)
{
    QString name = system.productName;
    // On Windows 11 the registry still says Windows 10.
    if (system.build >= kFirstWindows11Build)
        name.replace("Windows 10"_L1, "Windows 11"_L1);
    if (name.isEmpty())
        name = system.prettyName;

    const bool is64Bit = system.architecture.contains("64"_L1);
    QStringList parts { name, system.displayVersion, is64Bit ? u"64-bit"_s : u"32-bit"_s };
    parts.removeAll(QString());
    CheckResult result { u"Operating system"_s, parts.join(u" · "_s) };
    if (system.build > 0 && system.build < Product::kOldestBuild) {
        result.ok = false;
        result.value += u" — unsupported";
    }
    return result;
}

CheckResult judgeProcessor(const QString &name, int megahertz, const QString &architecture)
{
    QString shownName = name;
    for (QLatin1StringView noise : { "(R)"_L1, "(TM)"_L1, "CPU"_L1 })
        shownName.remove(noise);
    shownName = shownName.simplified();
    if (shownName.isEmpty())
        shownName = architecture;

    CheckResult result { u"Processor"_s, shownName };
    if (megahertz > 0 && !shownName.contains("GHz"_L1))
        result.value = u"%1 · %2 GHz"_s.arg(shownName, QString::number(megahertz / 1000.0, 'f', 1));
    return result;
}

CheckResult judgeMemory(std::optional<quint64> bytes)
{
    CheckResult result { u"Memory"_s, u"Unknown"_s };
    if (!bytes)
        return result;
    const double gigabytes = double(*bytes) / double(1ULL << 30);
    result.value = u"%1 GB"_s.arg(QString::number(gigabytes, 'f', gigabytes < 10.0 ? 1 : 0));
    if (*bytes <= kMemoryLimit) {
        result.ok = false;
        result.value += u" — 4 GB recommended";
    }
    return result;
}

CheckResult judgeDiskSpace(qint64 available, const QString &volume)
{
    // Exactly the required amount fails: a volume should not be filled to its last byte.
    const bool ok = available < 1 || available > Product::kRequiredBytes;
    const QString free = QLocale::system().formattedDataSize(qMax(available, qint64(0)), 1,
                                                             QLocale::DataSizeTraditionalFormat);
    const QString text =
        ok ? u"%1 required · %2 free on %3"_s : u"%1 required · only %2 free on %3"_s;
    return { u"Disk space"_s, text.arg(Product::kRequiredSpace, free, volume), ok };
}

CheckResult judgeDisplay(std::optional<QSize> pixels, double refreshRate)
{
    CheckResult result { u"Graphics · display"_s, u"Unknown"_s };
    if (!pixels)
        return result;
    result.value = u"%1 × %2"_s.arg(pixels->width()).arg(pixels->height());
    if (const long hertz = std::lround(refreshRate); hertz >= 1)
        result.value += u" · %1 Hz"_s.arg(hertz);
    return result;
}

QSize unscaledScreenSize(QSize scaled, double ratio)
{
    const auto unscaled = [ratio](int length) {
        const double exact = length * ratio;
        // Nearly all panels have lengths divisible by 8, the others even ones.
        for (const int unit : { 8, 2 }) {
            const int candidate = unit * qRound(exact / unit);
            if (qRound(candidate / ratio) == length)
                return candidate;
        }
        return qRound(exact);
    };
    return { unscaled(scaled.width()), unscaled(scaled.height()) };
}

CheckResult judgeDotNet(int release)
{
    struct Version
    {
        int firstRelease;
        QStringView name;
    };
    static constexpr Version kVersions[] = {
        { 533320, u"4.8.1" }, { 528040, u"4.8" },   { 461808, u"4.7.2" },
        { 460798, u"4.7" },   { 394802, u"4.6.2" }, { 1, u"4.x" },
    };
    for (const Version &version : kVersions) {
        if (release >= version.firstRelease)
            return { u".NET Framework"_s, version.name.toString() };
    }
    return { u".NET Framework"_s, u"Not detected"_s, false };
}

CheckResult judgeVcRuntime(bool present)
{
    return { u"Visual C++ Runtime"_s, present ? u"Installed"_s : kMissing, present };
}

CheckResult judgeWebView(const QString &version)
{
    const bool present = !version.isEmpty();
    return { u"WebView2 Runtime"_s, present ? version : kMissing, present };
}

CheckResult judgeSmartAppControl(int policyState)
{
    const QString label = kSmartAppControlLabel.toString();
    if (policyState == kSmartAppControlOn)
        return { label, u"On — blocks the app"_s, false };
    return { label, policyState == 2 ? u"Evaluation"_s : u"Off"_s };
}
