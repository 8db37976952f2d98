#include "support/stricttest.h"
#include "system/requirements.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint64 kGiB = 1ULL << 30;

} // namespace

class TestRequirements : public StrictTest
{
    Q_OBJECT

public:
    // English with a decimal comma, which the free disk space follows; all else has a point.
    static void initMain() { qputenv("LC_ALL", "en_DE.UTF-8"); }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void operatingSystem_data();
    void operatingSystem();
    void processor_data();
    void processor();
    void memory_data();
    void memory();
    void diskSpace_data();
    void diskSpace();
    void display_data();
    void display();
    void unscaledSizeScalesToTheGivenOne();
    void dotNet_data();
    void dotNet();
    void components();
    void smartAppControl();
};

void TestRequirements::operatingSystem_data()
{
    QTest::addColumn<OperatingSystem>("system");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    const auto row = [](const char *name, const QString &product, const QString &release, int build,
                        const QString &value, bool ok = true, const QString &bits = u"x86_64"_s) {
        QTest::newRow(name) << OperatingSystem { product, release, build, u"Pretty 1"_s, bits }
                            << value << ok;
    };
    const QString pro = u"Windows 10 Pro"_s;
    row("last build of 10", pro, u"22H2"_s, 21999, u"Windows 10 Pro · 22H2 · 64-bit"_s);
    row("first build of 11", pro, u"21H2"_s, 22000, u"Windows 11 Pro · 21H2 · 64-bit"_s);
    row("oldest build", pro, u"1809"_s, 17763, u"Windows 10 Pro · 1809 · 64-bit"_s);
    row("one build too old", pro, u"1803"_s, 17762,
        u"Windows 10 Pro · 1803 · 64-bit — unsupported"_s, false);
    row("unknown build", pro, u"22H2"_s, 0, u"Windows 10 Pro · 22H2 · 64-bit"_s);
    row("32-bit", pro, u"22H2"_s, 19045, u"Windows 10 Pro · 22H2 · 32-bit"_s, true, u"i386"_s);
    row("64-bit ARM", pro, u"23H2"_s, 22631, u"Windows 11 Pro · 23H2 · 64-bit"_s, true, u"arm64"_s);
    row("no name", {}, {}, 0, u"Pretty 1 · 64-bit"_s);
    row("no release", pro, {}, 19045, u"Windows 10 Pro · 64-bit"_s);
    row("place markers", u"A %1 %2"_s, u"%3 &<b>"_s, 19045, u"A %1 %2 · %3 &<b> · 64-bit"_s);
    // A pretty name comes from the system itself and not from the registry, where the older name is
    // kept.
    QTest::newRow("pretty name stays as it is")
        << OperatingSystem { {}, {}, 22000, u"Windows 10 Version 22H2"_s, u"x86_64"_s }
        << u"Windows 10 Version 22H2 · 64-bit"_s << true;
}

void TestRequirements::operatingSystem()
{
    QFETCH(const OperatingSystem, system);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeOperatingSystem(system), (CheckResult { u"Operating system"_s, value, ok }));
}

void TestRequirements::processor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("megahertz");
    QTest::addColumn<QString>("value");
    QTest::newRow("name tells the speed") << u"Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz"_s << 3600
                                          << u"Intel Core i7-9700K @ 3.60GHz"_s;
    QTest::newRow("speed added") << u"AMD Ryzen 7 5800X 8-Core Processor"_s << 3800
                                 << u"AMD Ryzen 7 5800X 8-Core Processor · 3.8 GHz"_s;
    QTest::newRow("several marks") << u"Intel(R)(R) Core(TM) CPU(TM) CPU"_s << 0 << u"Intel Core"_s;
    QTest::newRow("blanks collapse")
        << u"  Intel(R)   Xeon(R) \t CPU   E5  "_s << 0 << u"Intel Xeon E5"_s;
    QTest::newRow("marks in small letters stay")
        << u"Chip(r) (tm) cpu"_s << 0 << u"Chip(r) (tm) cpu"_s;
    QTest::newRow("negative speed") << u"Chip"_s << -2000 << u"Chip"_s;
    QTest::newRow("rounded up") << u"Chip"_s << 2951 << u"Chip · 3.0 GHz"_s;
    QTest::newRow("no name") << u""_s << 2300 << u"arch_64 · 2.3 GHz"_s;
    QTest::newRow("marks alone") << u" (R) CPU (TM) "_s << 0 << u"arch_64"_s;
    QTest::newRow("place markers, markup")
        << u"A %1 <b>%2</b>"_s << 2300 << u"A %1 <b>%2</b> · 2.3 GHz"_s;
}

void TestRequirements::processor()
{
    QFETCH(const QString, name);
    QFETCH(const int, megahertz);
    QFETCH(const QString, value);
    QCOMPARE(judgeProcessor(name, megahertz, u"arch_64"_s),
             (CheckResult { u"Processor"_s, value, true }));
}

void TestRequirements::memory_data()
{
    QTest::addColumn<std::optional<quint64>>("bytes");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    const auto row = [](const char *name, std::optional<quint64> bytes, const QString &value,
                        bool ok = true) { QTest::newRow(name) << bytes << value << ok; };
    row("unknown", {}, u"Unknown"_s);
    row("3.5 GiB", kGiB * 7 / 2, u"3.5 GB — 4 GB recommended"_s, false);
    row("one byte less than 4 GiB", 4 * kGiB - 1, u"4.0 GB — 4 GB recommended"_s, false);
    row("4 GiB", 4 * kGiB, u"4.0 GB"_s);
    row("one byte less than 10 GiB", 10 * kGiB - 1, u"10.0 GB"_s);
    row("10 GiB", 10 * kGiB, u"10 GB"_s);
    row("a laptop's 16, less what the graphics take", 16'965'000'000, u"16 GB"_s);
    row("1 TiB", 1024 * kGiB, u"1024 GB"_s);
}

void TestRequirements::memory()
{
    QFETCH(const std::optional<quint64>, bytes);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeMemory(bytes), (CheckResult { u"Memory"_s, value, ok }));
}

void TestRequirements::diskSpace_data()
{
    QTest::addColumn<qint64>("available");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QString>("shown"); // with a decimal point
    QTest::addColumn<bool>("ok");
    const auto row = [](const char *name, qint64 available, const QString &shown, bool ok = true,
                        const QString &volume = uR"(C:\)"_s) {
        QTest::newRow(name) << available << volume << shown << ok;
    };
    row("unknown", -1, u"0 bytes"_s);
    row("nothing reported", 0, u"0 bytes"_s);
    row("one byte", 1, u"1 bytes"_s, false);
    row("half", 115'343'360, u"110.0 MB"_s, false);
    row("exactly", 230'686'720, u"220.0 MB"_s, false);
    row("one byte more", 230'686'721, u"220.0 MB"_s);
    row("plenty", 131'178'679'501, u"122.2 GB"_s);
    row("other volume", 1'610'612'736, u"1.5 GB"_s, true, u"/mnt/a %1 %2 %3"_s);
    row("no volume", -1, u"0 bytes"_s, true, {});
}

void TestRequirements::diskSpace()
{
    QFETCH(const qint64, available);
    QFETCH(const QString, volume);
    QFETCH(QString, shown);
    QFETCH(const bool, ok);
    shown.replace(u"."_s, QLocale::system().decimalPoint());
    QCOMPARE(judgeDiskSpace(available, volume),
             (CheckResult { u"Disk space"_s,
                            u"220 MB required · "_s + (ok ? u""_s : u"only "_s) + shown
                                + u" free on "_s + volume,
                            ok }));
#ifndef Q_OS_WIN
    QCOMPARE(QLocale::system().decimalPoint(), u","_s);
#endif
}

void TestRequirements::display_data()
{
    QTest::addColumn<std::optional<QSize>>("pixels");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, std::optional<QSize> pixels, double rate,
                        const QString &value) { QTest::newRow(name) << pixels << rate << value; };
    const QSize hd(1920, 1080);
    row("no display", {}, 60, u"Unknown"_s);
    row("59.94", QSize(3840, 2160), 59.94, u"3840 × 2160 · 60 Hz"_s);
    row("below a half", hd, 143.4, u"1920 × 1080 · 143 Hz"_s);
    row("a half", hd, 144.5, u"1920 × 1080 · 145 Hz"_s);
    row("0.5", hd, 0.5, u"1920 × 1080 · 1 Hz"_s);
    row("0.4", hd, 0.4, u"1920 × 1080"_s);
    row("negative", hd, -60, u"1920 × 1080"_s);
    row("thousands without separators", QSize(10240, 4320), 1000, u"10240 × 4320 · 1000 Hz"_s);
}

void TestRequirements::display()
{
    QFETCH(const std::optional<QSize>, pixels);
    QFETCH(const double, rate);
    QFETCH(const QString, value);
    QCOMPARE(judgeDisplay(pixels, rate), (CheckResult { u"Graphics · display"_s, value, true }));
}

void TestRequirements::unscaledSizeScalesToTheGivenOne()
{
    for (const double ratio : { 1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 2.5, 3.0, 3.5 }) {
        for (int length = 100; length < 1000; ++length) {
            const QSize pixels = unscaledScreenSize({ length, length + 7 }, ratio);
            QCOMPARE(pixels / ratio, QSize(length, length + 7));
        }
    }
}

void TestRequirements::dotNet_data()
{
    QTest::addColumn<int>("release");
    QTest::addColumn<QString>("value");
    const auto row = [](int release, const QString &value) {
        QTest::addRow("%d", release) << release << value;
    };
    row(-1, u"Not detected"_s);
    row(0, u"Not detected"_s);
    row(1, u"4.x"_s);
    row(394801, u"4.x"_s);
    row(394802, u"4.6.2"_s);
    row(460797, u"4.6.2"_s);
    row(460798, u"4.7"_s);
    row(461807, u"4.7"_s);
    row(461808, u"4.7.2"_s);
    row(528039, u"4.7.2"_s);
    row(528040, u"4.8"_s);
    row(533319, u"4.8"_s);
    row(533320, u"4.8.1"_s);
    row(std::numeric_limits<int>::max(), u"4.8.1"_s);
}

void TestRequirements::dotNet()
{
    QFETCH(const int, release);
    QFETCH(const QString, value);
    QCOMPARE(judgeDotNet(release), (CheckResult { u".NET Framework"_s, value, release > 0 }));
}

void TestRequirements::components()
{
    const QString missing = u"Missing — will install"_s;
    QCOMPARE(judgeVcRuntime(true), (CheckResult { u"Visual C++ Runtime"_s, u"Installed"_s, true }));
    QCOMPARE(judgeVcRuntime(false), (CheckResult { u"Visual C++ Runtime"_s, missing, false }));
    QCOMPARE(judgeWebView(u""_s), (CheckResult { u"WebView2 Runtime"_s, missing, false }));
    QCOMPARE(judgeWebView(u"%1 &<b>"_s),
             (CheckResult { u"WebView2 Runtime"_s, u"%1 &<b>"_s, true }));
}

void TestRequirements::smartAppControl()
{
    const QString label = u"Smart App Control"_s;
    for (const int state : { -1, 0, 3 })
        QCOMPARE(judgeSmartAppControl(state), (CheckResult { label, u"Off"_s, true }));
    QCOMPARE(judgeSmartAppControl(1), (CheckResult { label, u"On — blocks the app"_s, false }));
    QCOMPARE(judgeSmartAppControl(2), (CheckResult { label, u"Evaluation"_s, true }));
    // The system check page finds the row by its label.
    QCOMPARE(kSmartAppControlLabel, label);
}

QTEST_GUILESS_MAIN(TestRequirements)
#include "tst_requirements.moc"
