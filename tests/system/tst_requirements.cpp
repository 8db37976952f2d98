#include "system/requirements.h"

#include <QRegularExpression>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint64 kGiB = 1ULL << 30;

} // namespace

class TestRequirements : public QObject
{
    Q_OBJECT

public:
    // The free disk space follows the system's locale, which another program tries.
    static void initMain() { qputenv("LC_ALL", "C.UTF-8"); }

private Q_SLOTS:
    void init();
    void operatingSystem_data();
    void operatingSystem();
    void prettyNameStaysAsItIs();
    void processor_data();
    void processor();
    void memory_data();
    void memory();
    void unknownMemory();
    void diskSpace_data();
    void diskSpace();
    void display_data();
    void display();
    void noDisplay();
    void unscaledSizeScalesToTheGivenOne();
    void dotNet_data();
    void dotNet();
    void vcRuntime();
    void webView_data();
    void webView();
    void smartAppControl_data();
    void smartAppControl();
    void smartAppControlConstants();
    void resultsCompareByAllTheirParts();
};

void TestRequirements::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestRequirements::operatingSystem_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("release");
    QTest::addColumn<int>("build");
    QTest::addColumn<QString>("architecture");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    const QString pro = u"Windows 10 Pro"_s;
    const QString x64 = u"x86_64"_s;
    QTest::newRow("Windows 10") << pro << u"22H2"_s << 19045 << x64
                                << u"Windows 10 Pro · 22H2 · 64-bit"_s << true;
    QTest::newRow("last build of 10")
        << pro << u"22H2"_s << 21999 << x64 << u"Windows 10 Pro · 22H2 · 64-bit"_s << true;
    QTest::newRow("first build of 11")
        << pro << u"21H2"_s << 22000 << x64 << u"Windows 11 Pro · 21H2 · 64-bit"_s << true;
    QTest::newRow("Windows 11") << u"Windows 10 Enterprise"_s << u"23H2"_s << 22631 << x64
                                << u"Windows 11 Enterprise · 23H2 · 64-bit"_s << true;
    QTest::newRow("names itself 11") << u"Windows 11 Home"_s << u"24H2"_s << 26100 << x64
                                     << u"Windows 11 Home · 24H2 · 64-bit"_s << true;
    QTest::newRow("server") << u"Windows Server 2022"_s << u"21H2"_s << 22000 << x64
                            << u"Windows Server 2022 · 21H2 · 64-bit"_s << true;
    QTest::newRow("name in the middle") << u"Microsoft Windows 10 N"_s << u""_s << 22000 << x64
                                        << u"Microsoft Windows 11 N · 64-bit"_s << true;
    QTest::newRow("oldest build") << pro << u"1809"_s << 17763 << x64
                                  << u"Windows 10 Pro · 1809 · 64-bit"_s << true;
    QTest::newRow("one build too old")
        << pro << u"1803"_s << 17762 << x64 << u"Windows 10 Pro · 1803 · 64-bit — unsupported"_s
        << false;
    QTest::newRow("build 1") << pro << u""_s << 1 << x64
                             << u"Windows 10 Pro · 64-bit — unsupported"_s << false;
    QTest::newRow("unknown build")
        << pro << u"22H2"_s << 0 << x64 << u"Windows 10 Pro · 22H2 · 64-bit"_s << true;
    QTest::newRow("build of nonsense")
        << pro << u"22H2"_s << -1 << x64 << u"Windows 10 Pro · 22H2 · 64-bit"_s << true;
    QTest::newRow("32-bit") << pro << u"22H2"_s << 19045 << u"i386"_s
                            << u"Windows 10 Pro · 22H2 · 32-bit"_s << true;
    QTest::newRow("32-bit ARM") << pro << u"22H2"_s << 19045 << u"arm"_s
                                << u"Windows 10 Pro · 22H2 · 32-bit"_s << true;
    QTest::newRow("64-bit ARM") << pro << u"23H2"_s << 22631 << u"arm64"_s
                                << u"Windows 11 Pro · 23H2 · 64-bit"_s << true;
    QTest::newRow("no architecture")
        << pro << u"22H2"_s << 19045 << u""_s << u"Windows 10 Pro · 22H2 · 32-bit"_s << true;
    QTest::newRow("no name") << u""_s << u""_s << 0 << x64 << u"Pretty Name 1 · 64-bit"_s << true;
    QTest::newRow("no name, but the rest")
        << u""_s << u"23H2"_s << 22631 << x64 << u"Pretty Name 1 · 23H2 · 64-bit"_s << true;
    QTest::newRow("no name, too old")
        << u""_s << u""_s << 10240 << x64 << u"Pretty Name 1 · 64-bit — unsupported"_s << false;
    QTest::newRow("no release") << pro << u""_s << 19045 << x64 << u"Windows 10 Pro · 64-bit"_s
                                << true;
    QTest::newRow("place markers")
        << u"A %1 %2"_s << u"%3 &<b>"_s << 19045 << x64 << u"A %1 %2 · %3 &<b> · 64-bit"_s << true;
}

void TestRequirements::operatingSystem()
{
    QFETCH(const QString, product);
    QFETCH(const QString, release);
    QFETCH(const int, build);
    QFETCH(const QString, architecture);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    const CheckResult result = judgeOperatingSystem({
        .productName = product,
        .displayVersion = release,
        .build = build,
        .prettyName = u"Pretty Name 1"_s,
        .architecture = architecture,
    });
    QCOMPARE(result.label, u"Operating system"_s);
    QCOMPARE(result.value, value);
    QCOMPARE(result.ok, ok);
}

// It comes from the system itself and not from the registry, where the older name is kept.
void TestRequirements::prettyNameStaysAsItIs()
{
    QCOMPARE(judgeOperatingSystem({ .productName = {},
                                    .displayVersion = {},
                                    .build = 22000,
                                    .prettyName = u"Windows 10 Version 22H2"_s,
                                    .architecture = u"x86_64"_s })
                 .value,
             u"Windows 10 Version 22H2 · 64-bit"_s);
}

void TestRequirements::processor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("megahertz");
    QTest::addColumn<QString>("value");
    QTest::newRow("name tells the speed") << u"Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz"_s << 3600
                                          << u"Intel Core i7-9700K @ 3.60GHz"_s;
    QTest::newRow("speed with a blank") << u"Xeon 2.4 GHz"_s << 3600 << u"Xeon 2.4 GHz"_s;
    QTest::newRow("speed added") << u"AMD Ryzen 7 5800X 8-Core Processor"_s << 3800
                                 << u"AMD Ryzen 7 5800X 8-Core Processor · 3.8 GHz"_s;
    QTest::newRow("several marks") << u"Intel(R)(R) Core(TM) CPU(TM) CPU"_s << 0 << u"Intel Core"_s;
    QTest::newRow("blanks collapse")
        << u"  Intel(R)   Xeon(R) \t CPU   E5  "_s << 0 << u"Intel Xeon E5"_s;
    QTest::newRow("marks in small letters stay")
        << u"Chip(r) (tm) cpu"_s << 0 << u"Chip(r) (tm) cpu"_s;
    QTest::newRow("speed unknown") << u"Chip"_s << 0 << u"Chip"_s;
    QTest::newRow("speed of nonsense") << u"Chip"_s << -2000 << u"Chip"_s;
    QTest::newRow("least speed") << u"Chip"_s << 1 << u"Chip · 0.0 GHz"_s;
    QTest::newRow("whole gigahertz") << u"Chip"_s << 2000 << u"Chip · 2.0 GHz"_s;
    QTest::newRow("rounded down") << u"Chip"_s << 2349 << u"Chip · 2.3 GHz"_s;
    QTest::newRow("rounded up") << u"Chip"_s << 2951 << u"Chip · 3.0 GHz"_s;
    QTest::newRow("above ten") << u"Chip"_s << 10500 << u"Chip · 10.5 GHz"_s;
    QTest::newRow("no name") << u""_s << 2300 << u"arch_64 · 2.3 GHz"_s;
    QTest::newRow("no name, no speed") << u""_s << 0 << u"arch_64"_s;
    QTest::newRow("marks alone") << u" (R) CPU (TM) "_s << 0 << u"arch_64"_s;
    QTest::newRow("place markers") << u"A %1 %2 %3"_s << 2300 << u"A %1 %2 %3 · 2.3 GHz"_s;
    QTest::newRow("markup") << u"<b>A & B</b>"_s << 2300 << u"<b>A & B</b> · 2.3 GHz"_s;
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
    QTest::addColumn<quint64>("bytes");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    QTest::newRow("none") << 0ULL << u"0.0 GB — 4 GB recommended"_s << false;
    QTest::newRow("1 GiB") << kGiB << u"1.0 GB — 4 GB recommended"_s << false;
    QTest::newRow("3.5 GiB") << kGiB * 7 / 2 << u"3.5 GB — 4 GB recommended"_s << false;
    QTest::newRow("one byte less than 4 GiB")
        << 4'294'967'295ULL << u"4.0 GB — 4 GB recommended"_s << false;
    QTest::newRow("4 GiB") << 4'294'967'296ULL << u"4.0 GB"_s << true;
    QTest::newRow("8 GiB") << 8 * kGiB << u"8.0 GB"_s << true;
    QTest::newRow("just below 9.95") << 10'683'731'148ULL << u"9.9 GB"_s << true;
    QTest::newRow("just above 9.95") << 10'683'731'149ULL << u"10.0 GB"_s << true;
    QTest::newRow("one byte less than 10 GiB") << 10 * kGiB - 1 << u"10.0 GB"_s << true;
    QTest::newRow("10 GiB") << 10 * kGiB << u"10 GB"_s << true;
    QTest::newRow("a laptop's 16, less what the graphics take")
        << 16'965'000'000ULL << u"16 GB"_s << true;
    QTest::newRow("16 GiB") << 16 * kGiB << u"16 GB"_s << true;
    QTest::newRow("1 TiB") << 1024 * kGiB << u"1024 GB"_s << true;
}

void TestRequirements::memory()
{
    QFETCH(const quint64, bytes);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeMemory(bytes), (CheckResult { u"Memory"_s, value, ok }));
}

void TestRequirements::unknownMemory()
{
    QCOMPARE(judgeMemory(std::nullopt), (CheckResult { u"Memory"_s, u"Unknown"_s, true }));
}

void TestRequirements::diskSpace_data()
{
    QTest::addColumn<qint64>("available");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    const QString c = uR"(C:\)"_s;
    QTest::newRow("unknown") << qint64(-1) << c << uR"(220 MB required · 0 bytes free on C:\)"_s
                             << true;
    QTest::newRow("nothing reported")
        << qint64(0) << c << uR"(220 MB required · 0 bytes free on C:\)"_s << true;
    QTest::newRow("one byte") << qint64(1) << c
                              << uR"(220 MB required · only 1 bytes free on C:\)"_s << false;
    QTest::newRow("half") << qint64(115'343'360) << c
                          << uR"(220 MB required · only 110.0 MB free on C:\)"_s << false;
    QTest::newRow("one byte less")
        << qint64(230'686'719) << c << uR"(220 MB required · only 220.0 MB free on C:\)"_s << false;
    QTest::newRow("exactly") << qint64(230'686'720) << c
                             << uR"(220 MB required · only 220.0 MB free on C:\)"_s << false;
    QTest::newRow("one byte more")
        << qint64(230'686'721) << c << uR"(220 MB required · 220.0 MB free on C:\)"_s << true;
    QTest::newRow("plenty") << qint64(131'178'679'501) << c
                            << uR"(220 MB required · 122.2 GB free on C:\)"_s << true;
    QTest::newRow("other volume") << qint64(1'610'612'736) << u"/mnt/data"_s
                                  << u"220 MB required · 1.5 GB free on /mnt/data"_s << true;
    QTest::newRow("place markers") << qint64(1'610'612'736) << u"/a %1 %2 %3"_s
                                   << u"220 MB required · 1.5 GB free on /a %1 %2 %3"_s << true;
    QTest::newRow("no volume") << qint64(-1) << QString() << u"220 MB required · 0 bytes free on "_s
                               << true;
}

void TestRequirements::diskSpace()
{
    QFETCH(const qint64, available);
    QFETCH(const QString, volume);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeDiskSpace(available, volume), (CheckResult { u"Disk space"_s, value, ok }));
}

void TestRequirements::display_data()
{
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QString>("value");
    QTest::newRow("60") << QSize(1920, 1080) << 60.0 << u"1920 × 1080 · 60 Hz"_s;
    QTest::newRow("59.94") << QSize(3840, 2160) << 59.94 << u"3840 × 2160 · 60 Hz"_s;
    QTest::newRow("below a half") << QSize(1920, 1080) << 143.4 << u"1920 × 1080 · 143 Hz"_s;
    QTest::newRow("a half, odd") << QSize(1920, 1080) << 143.5 << u"1920 × 1080 · 144 Hz"_s;
    QTest::newRow("a half, even") << QSize(1920, 1080) << 144.5 << u"1920 × 1080 · 145 Hz"_s;
    QTest::newRow("1") << QSize(1920, 1080) << 1.0 << u"1920 × 1080 · 1 Hz"_s;
    QTest::newRow("0.5") << QSize(1920, 1080) << 0.5 << u"1920 × 1080 · 1 Hz"_s;
    QTest::newRow("0.4") << QSize(1920, 1080) << 0.4 << u"1920 × 1080"_s;
    QTest::newRow("0") << QSize(1920, 1080) << 0.0 << u"1920 × 1080"_s;
    QTest::newRow("negative") << QSize(1920, 1080) << -60.0 << u"1920 × 1080"_s;
    QTest::newRow("thousands without separators")
        << QSize(10240, 4320) << 1000.0 << u"10240 × 4320 · 1000 Hz"_s;
}

void TestRequirements::display()
{
    QFETCH(const QSize, pixels);
    QFETCH(const double, rate);
    QFETCH(const QString, value);
    QCOMPARE(judgeDisplay(pixels, rate), (CheckResult { u"Graphics · display"_s, value, true }));
}

void TestRequirements::noDisplay()
{
    QCOMPARE(judgeDisplay(std::nullopt, 60.0),
             (CheckResult { u"Graphics · display"_s, u"Unknown"_s, true }));
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
    QTest::addColumn<bool>("ok");
    const auto row = [](int release, const QString &value, bool ok) {
        QTest::addRow("%d", release) << release << value << ok;
    };
    row(std::numeric_limits<int>::min(), u"Not detected"_s, false);
    row(-1, u"Not detected"_s, false);
    row(0, u"Not detected"_s, false);
    row(1, u"4.x"_s, true);
    row(394801, u"4.x"_s, true);
    row(394802, u"4.6.2"_s, true);
    row(460797, u"4.6.2"_s, true);
    row(460798, u"4.7"_s, true);
    row(461807, u"4.7"_s, true);
    row(461808, u"4.7.2"_s, true);
    row(528039, u"4.7.2"_s, true);
    row(528040, u"4.8"_s, true);
    row(533319, u"4.8"_s, true);
    row(533320, u"4.8.1"_s, true);
    row(std::numeric_limits<int>::max(), u"4.8.1"_s, true);
}

void TestRequirements::dotNet()
{
    QFETCH(const int, release);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeDotNet(release), (CheckResult { u".NET Framework"_s, value, ok }));
}

void TestRequirements::vcRuntime()
{
    QCOMPARE(judgeVcRuntime(true), (CheckResult { u"Visual C++ Runtime"_s, u"Installed"_s, true }));
    QCOMPARE(judgeVcRuntime(false),
             (CheckResult { u"Visual C++ Runtime"_s, u"Missing — will install"_s, false }));
}

void TestRequirements::webView_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    QTest::newRow("missing") << QString() << u"Missing — will install"_s << false;
    QTest::newRow("empty") << u""_s << u"Missing — will install"_s << false;
    QTest::newRow("there") << u"128.0.2739.42"_s << u"128.0.2739.42"_s << true;
    QTest::newRow("place markers") << u"%1 &<b>"_s << u"%1 &<b>"_s << true;
}

void TestRequirements::webView()
{
    QFETCH(const QString, version);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeWebView(version), (CheckResult { u"WebView2 Runtime"_s, value, ok }));
}

void TestRequirements::smartAppControl_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("ok");
    QTest::newRow("-1") << -1 << u"Off"_s << true;
    QTest::newRow("0") << 0 << u"Off"_s << true;
    QTest::newRow("1") << 1 << u"On — blocks the app"_s << false;
    QTest::newRow("2") << 2 << u"Evaluation"_s << true;
    QTest::newRow("3") << 3 << u"Off"_s << true;
}

void TestRequirements::smartAppControl()
{
    QFETCH(const int, state);
    QFETCH(const QString, value);
    QFETCH(const bool, ok);
    QCOMPARE(judgeSmartAppControl(state), (CheckResult { u"Smart App Control"_s, value, ok }));
}

// The page finds the row again by these.
void TestRequirements::smartAppControlConstants()
{
    QCOMPARE(judgeSmartAppControl(kSmartAppControlOn).label, kSmartAppControlLabel.toString());
    QVERIFY(!judgeSmartAppControl(kSmartAppControlOn).ok);
}

void TestRequirements::resultsCompareByAllTheirParts()
{
    const CheckResult result { u"a"_s, u"b"_s };
    QVERIFY(result.ok);
    QCOMPARE(result, (CheckResult { u"a"_s, u"b"_s, true }));
    QVERIFY(result != (CheckResult { u"x"_s, u"b"_s, true }));
    QVERIFY(result != (CheckResult { u"a"_s, u"x"_s, true }));
    QVERIFY(result != (CheckResult { u"a"_s, u"b"_s, false }));
}

QTEST_GUILESS_MAIN(TestRequirements)
#include "tst_requirements.moc"
