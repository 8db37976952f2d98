#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/machine.h"
#include "system/probes.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QSysInfo>
#include <QTest>

#include <cmath>
#include <optional>

#ifdef Q_OS_WIN
#include <windows.h>

#include <psapi.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

enum Row {
    SystemRow,
    ProcessorRow,
    MemoryRow,
    DiskRow,
    DisplayRow,
    DotNetRow,
    VcRuntimeRow,
    WebViewRow,
    SmartAppControlRow
};

const QString kSystemKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion)"_s;
const QString kProcessorKey =
    uR"(HKEY_LOCAL_MACHINE\HARDWARE\DESCRIPTION\System\CentralProcessor\0)"_s;
const QString kDotNetKey =
    uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\NET Framework Setup\NDP\v4\Full)"_s;
const QString kPolicyKey = uR"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\CI\Policy)"_s;
const QString kPolicyState = u"VerifiedAndReputablePolicyState"_s;
const QString kWebViewClient =
    uR"(Microsoft\EdgeUpdate\Clients\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5})"_s;

QString wordSize()
{
    return QSysInfo::currentCpuArchitecture().contains(u"64"_s) ? u"64-bit"_s : u"32-bit"_s;
}

/// A volume beside that of the root, so that the answer tells which of the two was looked at.
QString otherVolume()
{
    for (const QString &volume : { u"/dev/shm"_s, u"/dev"_s, u"/proc"_s, u"/sys"_s }) {
        if (QStorageInfo(volume).rootPath() == volume)
            return volume;
    }
    return {};
}

/// What the disk space row names as its volume.
QString volumeOf(const CheckResult &result)
{
    return result.value.section(u" free on "_s, 1);
}

/// The bytes that the disk space row shows as free, rounded as they are shown.
double freeBytesOf(const CheckResult &result)
{
    const QStringList words = result.value.section(u" free on "_s, 0, 0).split(u' ');
    const QStringList units { u"bytes"_s, u"KB"_s, u"MB"_s, u"GB"_s, u"TB"_s };
    return QLocale::system().toDouble(words.value(words.size() - 2))
        * std::pow(1024, units.indexOf(words.last()));
}

} // namespace

class TestProbes : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void emptyRegistry();
    void registryFeedsTheRows();
    void webViewRoots_data();
    void webViewRoots();
    void smartAppControlOn();
    void vcRuntimeIsTwoFiles();
    void vcRuntimeIsThatOfTheSystem();
    void volume_data();
    void volume();
    void spaceIsThatWhichIsFree();
    void memoryIsThatOfTheKernel();
    void processorIsThatOfTheKernel();
    void reducedMotionOfTheDesktop();

private:
    std::optional<Sandbox> m_sandbox;
};

void TestProbes::init()
{
    StrictTest::init();
    m_sandbox.emplace();
}

void TestProbes::emptyRegistry()
{
    const QList<CheckResult> results = runSystemChecks(QString());
    QCOMPARE(results.size(), 9);
    const QString system = QSysInfo::prettyProductName() + u" · " + wordSize();
    QCOMPARE(results[SystemRow], (CheckResult { u"Operating system"_s, system, true }));
    QCOMPARE(results[ProcessorRow],
             judgeProcessor(processorName(), 0, QSysInfo::currentCpuArchitecture()));
    QVERIFY(totalMemory().has_value());
    QCOMPARE(results[MemoryRow], judgeMemory(totalMemory()));
    QCOMPARE(results[DiskRow].label, u"Disk space"_s);
    // This program has no window system, hence no screen.
    QCOMPARE(results[DisplayRow], judgeDisplay(std::nullopt, 0));
    QCOMPARE(results[DotNetRow], judgeDotNet(0));
    QCOMPARE(results[VcRuntimeRow], judgeVcRuntime(vcRuntimePresent()));
    QCOMPARE(results[WebViewRow], judgeWebView({}));
    QCOMPARE(results[SmartAppControlRow], judgeSmartAppControl(0));
}

void TestProbes::registryFeedsTheRows()
{
    m_sandbox->setRegistry({
        { kSystemKey,
          QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s },
                        { u"DisplayVersion"_s, u"23H2"_s },
                        { u"CurrentBuild"_s, u"22631"_s } } },
        { kProcessorKey,
          QJsonObject { { u"ProcessorNameString"_s, u"  AMD(R) Ryzen(TM) 7  CPU 5800X "_s },
                        { u"~MHz"_s, 3800 } } },
        { kDotNetKey, QJsonObject { { u"Release"_s, 528040 } } },
        { kPolicyKey, QJsonObject { { kPolicyState, 2 } } },
    });
    const QList<CheckResult> results = runSystemChecks(QString());
    QCOMPARE(results.size(), 9);
    QCOMPARE(results[SystemRow].value, QString(u"Windows 11 Pro · 23H2 · " + wordSize()));
    QCOMPARE(results[ProcessorRow].value, u"AMD Ryzen 7 5800X · 3.8 GHz"_s);
    QCOMPARE(results[DotNetRow].value, u"4.8"_s);
    QCOMPARE(results[SmartAppControlRow].value, u"Evaluation"_s);
}

void TestProbes::webViewRoots_data()
{
    QTest::addColumn<QJsonArray>("versions"); // 32-bit view, machine, user
    QTest::addColumn<QString>("found");
    QTest::newRow("all three") << QJsonArray { u"1.0"_s, u"2.0"_s, u"3.0"_s } << u"1.0"_s;
    QTest::newRow("empty first") << QJsonArray { u""_s, u"2.0"_s, u"3.0"_s } << u"2.0"_s;
    QTest::newRow("wrong types first")
        << QJsonArray { 1, QJsonArray { u"1.0"_s }, u"3.0"_s } << u"3.0"_s;
    QTest::newRow("all empty") << QJsonArray { u""_s, u""_s, u""_s } << QString();
}

void TestProbes::webViewRoots()
{
    QFETCH(const QJsonArray, versions);
    QFETCH(const QString, found);
    const QString roots[] = { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\)"_s,
                              uR"(HKEY_LOCAL_MACHINE\SOFTWARE\)"_s,
                              uR"(HKEY_CURRENT_USER\SOFTWARE\)"_s };
    QJsonObject registry;
    for (int i = 0; i < 3; ++i)
        registry[roots[i] + kWebViewClient] = QJsonObject { { u"pv"_s, versions[i] } };
    m_sandbox->setRegistry(registry);
    QCOMPARE(runSystemChecks(QString()).value(WebViewRow), judgeWebView(found));
}

void TestProbes::smartAppControlOn()
{
    QVERIFY(!isSmartAppControlOn());
    for (const QJsonValue &state : { QJsonValue(2), QJsonValue(u"on"_s), QJsonValue(1) }) {
        m_sandbox->setRegistry({ { kPolicyKey, QJsonObject { { kPolicyState, state } } } });
        QCOMPARE(isSmartAppControlOn(), state.toInt() == 1);
    }
}

void TestProbes::vcRuntimeIsTwoFiles()
{
    const QString folder = m_sandbox->path(u"system"_s);
    QVERIFY(!hasVcRuntime(folder));
    const QString first = m_sandbox->write(u"system/vcruntime140.dll"_s, "library");
    QVERIFY(!hasVcRuntime(folder));
    m_sandbox->write(u"system/vcruntime140_1.dll"_s, "library");
    QVERIFY(hasVcRuntime(folder));
    QVERIFY(QFile::remove(first));
    QVERIFY(!hasVcRuntime(folder));
}

void TestProbes::vcRuntimeIsThatOfTheSystem()
{
#ifdef Q_OS_WIN
    QVERIFY(QFileInfo::exists(systemFolder() + "/kernel32.dll"_L1));
    QVERIFY(QDir::isAbsolutePath(systemFolder()));
    for (const QString &name : { u"vcruntime140.dll"_s, u"vcruntime140_1.dll"_s }) {
        const QString file = systemFolder() + u'/' + name;
        const bool wasThere = vcRuntimePresent();
        const auto restore = qScopeGuard([&] { QFile::rename(file + ".aside"_L1, file); });
        if (!wasThere || !QFile::rename(file, file + ".aside"_L1))
            QSKIP("This machine has none that could be put aside.");
        QVERIFY(!vcRuntimePresent());
    }
    QVERIFY(vcRuntimePresent());
#else
    QCOMPARE(systemFolder(), QString());
    QVERIFY(!hasVcRuntime(QString()));
    QVERIFY(!vcRuntimePresent());
#endif
}

void TestProbes::volume_data()
{
    QTest::addColumn<QString>("path"); // {other}: another volume, {own}: the sandbox
    QTest::addColumn<QString>("nearest"); // the existing folder whose volume counts
    QTest::newRow("root") << u"{root}"_s << u"{root}"_s;
    QTest::newRow("two missing in the root") << u"{root}no such folder/nor this"_s << u"{root}"_s;
    QTest::newRow("no path") << QString() << u"{root}"_s;
    QTest::newRow("relative, missing") << u"no such folder/nor this"_s << u"{root}"_s;
    QTest::newRow("drive of another system") << uR"(Q:\no such folder\nor this)"_s << u"{root}"_s;
    QTest::newRow("file for a folder") << u"{own}/file/a"_s << u"{own}"_s;
#ifndef Q_OS_WIN
    QTest::newRow("file for a folder, other volume") << u"/dev/null/a/b"_s << u"/dev"_s;
#endif
    QTest::newRow("blanks, signs, other scripts") << u"{own}/a %1 & 'б' /c"_s << u"{own}"_s;
    QTest::newRow("other volume") << u"{other}"_s << u"{other}"_s;
    QTest::newRow("ten missing on the other volume")
        << u"{other}/a/b/c/d/e/f/g/h/i/j"_s << u"{other}"_s;
}

void TestProbes::volume()
{
    QFETCH(QString, path);
    QFETCH(QString, nearest);
    const QString other = otherVolume();
    if (other.isEmpty() && nearest == u"{other}"_s)
        QSKIP("This system has no volume besides that of its root.");
    m_sandbox->write(u"file"_s, {});
    for (QString *text : { &path, &nearest })
        text->replace(u"{root}"_s, QDir::rootPath())
            .replace(u"{other}"_s, other)
            .replace(u"{own}"_s, m_sandbox->path(u"."_s).chopped(2));
    const QString expected = QDir::toNativeSeparators(QStorageInfo(nearest).rootPath());
    QCOMPARE(volumeOf(checkDiskSpace(path)), expected);
    QCOMPARE(volumeOf(runSystemChecks(path).value(DiskRow)), expected);
}

// Other programs write at the same time, so the numbers are only about the same.
void TestProbes::spaceIsThatWhichIsFree()
{
    for (const QString &folder : { m_sandbox->tempFolder(), otherVolume() }) {
        const QStorageInfo volume(folder);
        const double used = double(volume.bytesTotal() - volume.bytesAvailable());
        if (!volume.isValid() || used < double(volume.bytesTotal()) / 10)
            continue;
        const double shown = freeBytesOf(checkDiskSpace(folder));
        QVERIFY2(std::abs(shown - double(volume.bytesAvailable())) < used / 2,
                 qPrintable(checkDiskSpace(folder).value));
        return;
    }
    QSKIP("No volume here is used to a tenth, so what is free and what there is look the same.");
}

void TestProbes::memoryIsThatOfTheKernel()
{
    const std::optional<quint64> memory = totalMemory();
    QVERIFY(memory.has_value());
#ifdef Q_OS_WIN
    PERFORMANCE_INFORMATION information = {};
    QVERIFY(GetPerformanceInfo(&information, sizeof information));
    QCOMPARE(*memory / information.PageSize, quint64(information.PhysicalTotal));
#else
    QFile file(u"/proc/meminfo"_s);
    if (!file.open(QIODevice::ReadOnly))
        QSKIP("This system does not tell its memory a second time.");
    static const QRegularExpression line(u"MemTotal:\\s+(\\d+) kB"_s);
    const QRegularExpressionMatch match = line.match(QString::fromUtf8(file.readAll()));
    QVERIFY(match.hasMatch());
    QCOMPARE(*memory / 1024, match.captured(1).toULongLong());
#endif
}

void TestProbes::processorIsThatOfTheKernel()
{
    const QString name = processorName();
#ifdef Q_OS_WIN
    QCOMPARE(name, QString()); // the registry has it
#else
    QCOMPARE(name, name.trimmed());
    QFile file(u"/proc/cpuinfo"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        QCOMPARE(name, QString());
        return;
    }
    static const QRegularExpression line(u"^model name\\s*:\\s*(.*?)\\s*$"_s,
                                         QRegularExpression::MultilineOption);
    // Not every processor tells a name; then there is none.
    QCOMPARE(name, line.match(QString::fromUtf8(file.readAll())).captured(1));
#endif
}

void TestProbes::reducedMotionOfTheDesktop()
{
#ifdef Q_OS_WIN
    m_sandbox.reset(); // it is about this machine
    // That of the running session, not the one that is kept for the user.
    BOOL before = TRUE;
    QVERIFY(SystemParametersInfoW(SPI_GETCLIENTAREAANIMATION, 0, &before, 0));
    const auto set = [](bool animated) {
        return SystemParametersInfoW(SPI_SETCLIENTAREAANIMATION, 0,
                                     reinterpret_cast<void *>(INT_PTR(animated)), 0);
    };
    const auto restore = qScopeGuard([&] { set(before); });
    for (const bool animated : { false, true }) {
        QVERIFY(set(animated));
        QCOMPARE(desktopPrefersReducedMotion(), !animated);
    }
#else
    QSKIP("There is no one setting for all desktops here.");
#endif
}

QTEST_GUILESS_MAIN(TestProbes)
#include "tst_probes.moc"
