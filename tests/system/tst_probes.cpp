#include "support/sandbox.h"
#include "system/machine.h"
#include "system/probes.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QSysInfo>
#include <QTest>

#include <memory>

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
const QString kWebViewMachine32 =
    uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\EdgeUpdate\Clients\)"
    uR"({F3017226-FE2A-4295-8BDF-00C3A9A7E4C5})"_s;
const QString kWebViewMachine = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\EdgeUpdate\Clients\)"
                                uR"({F3017226-FE2A-4295-8BDF-00C3A9A7E4C5})"_s;
const QString kWebViewUser = uR"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\EdgeUpdate\Clients\)"
                             uR"({F3017226-FE2A-4295-8BDF-00C3A9A7E4C5})"_s;

QString wordSize()
{
    return QSysInfo::currentCpuArchitecture().contains(u"64"_s) ? u"64-bit"_s : u"32-bit"_s;
}

} // namespace

class TestProbes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void rowsInOrder();
    void emptyRegistry();
    void registryFeedsTheRows();
    void rowsOneByOne_data();
    void rowsOneByOne();
    void webViewRoots_data();
    void webViewRoots();
    void smartAppControlOn_data();
    void smartAppControlOn();
    void memoryIsThatOfTheMachine();
    void vcRuntimeIsTwoFiles_data();
    void vcRuntimeIsTwoFiles();
    void vcRuntimeIsThatOfTheSystem();
    void everyRunReadsAfresh();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestProbes::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestProbes::cleanup()
{
    m_sandbox.reset();
}

void TestProbes::rowsInOrder()
{
    const QStringList expected {
        u"Operating system"_s,   u"Processor"_s,          u"Memory"_s,
        u"Disk space"_s,         u"Graphics · display"_s, u".NET Framework"_s,
        u"Visual C++ Runtime"_s, u"WebView2 Runtime"_s,   u"Smart App Control"_s,
    };
    QStringList labels;
    for (const CheckResult &result : runSystemChecks(m_sandbox->tempFolder())) {
        labels << result.label;
        QVERIFY2(!result.value.isEmpty(), qPrintable(result.label));
    }
    QCOMPARE(labels, expected);
}

void TestProbes::emptyRegistry()
{
    const QList<CheckResult> results = runSystemChecks(QString());
    QCOMPARE(results.size(), 9);
    QCOMPARE(results[SystemRow].value,
             QString(QSysInfo::prettyProductName() + u" · " + wordSize()));
    QVERIFY(results[SystemRow].ok);
    QCOMPARE(results[ProcessorRow],
             judgeProcessor(processorName(), 0, QSysInfo::currentCpuArchitecture()));
    // This program has no window system, hence no screen.
    QCOMPARE(results[DisplayRow], (CheckResult { u"Graphics · display"_s, u"Unknown"_s, true }));
    QCOMPARE(results[DotNetRow], (CheckResult { u".NET Framework"_s, u"Not detected"_s, false }));
    QCOMPARE(results[VcRuntimeRow], judgeVcRuntime(vcRuntimePresent()));
    QCOMPARE(results[WebViewRow],
             (CheckResult { u"WebView2 Runtime"_s, u"Missing — will install"_s, false }));
    QCOMPARE(results[SmartAppControlRow], (CheckResult { u"Smart App Control"_s, u"Off"_s, true }));
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
        { kWebViewMachine32, QJsonObject { { u"pv"_s, u"128.0.2739.42"_s } } },
        { kPolicyKey, QJsonObject { { u"VerifiedAndReputablePolicyState"_s, 2 } } },
    });
    const QList<CheckResult> results = runSystemChecks(QString());
    QCOMPARE(results.size(), 9);
    QCOMPARE(results[SystemRow].value, QString(u"Windows 11 Pro · 23H2 · " + wordSize()));
    QVERIFY(results[SystemRow].ok);
    QCOMPARE(results[ProcessorRow],
             (CheckResult { u"Processor"_s, u"AMD Ryzen 7 5800X · 3.8 GHz"_s, true }));
    QCOMPARE(results[DotNetRow], (CheckResult { u".NET Framework"_s, u"4.8"_s, true }));
    QCOMPARE(results[WebViewRow],
             (CheckResult { u"WebView2 Runtime"_s, u"128.0.2739.42"_s, true }));
    QCOMPARE(results[SmartAppControlRow],
             (CheckResult { u"Smart App Control"_s, u"Evaluation"_s, true }));
}

void TestProbes::rowsOneByOne_data()
{
    QTest::addColumn<Row>("row");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonObject>("values");
    QTest::addColumn<QString>("value"); // {name} of the system, {bits} of its words
    QTest::addColumn<bool>("ok");
    QTest::newRow("build too old") << SystemRow << kSystemKey
                                   << QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s },
                                                    { u"CurrentBuild"_s, u"17762"_s } }
                                   << u"Windows 10 Pro · {bits} — unsupported"_s << false;
    QTest::newRow("oldest build") << SystemRow << kSystemKey
                                  << QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s },
                                                   { u"CurrentBuild"_s, u"17763"_s } }
                                  << u"Windows 10 Pro · {bits}"_s << true;
    QTest::newRow("build as number")
        << SystemRow << kSystemKey
        << QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s }, { u"CurrentBuild"_s, 22000 } }
        << u"Windows 11 Pro · {bits}"_s << true;
    QTest::newRow("build no number") << SystemRow << kSystemKey
                                     << QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s },
                                                      { u"CurrentBuild"_s, u"22000x"_s } }
                                     << u"Windows 10 Pro · {bits}"_s << true;
    QTest::newRow("build alone") << SystemRow << kSystemKey
                                 << QJsonObject { { u"CurrentBuild"_s, u"22631"_s } }
                                 << u"{name} · {bits}"_s << true;
    QTest::newRow("release alone")
        << SystemRow << kSystemKey << QJsonObject { { u"DisplayVersion"_s, u"22H2"_s } }
        << u"{name} · 22H2 · {bits}"_s << true;
    QTest::newRow("system of a wrong type")
        << SystemRow << kSystemKey
        << QJsonObject { { u"ProductName"_s, QJsonArray { u"x"_s } },
                         { u"CurrentBuild"_s, QJsonObject() } }
        << u"{name} · {bits}"_s << true;
    QTest::newRow("processor without speed")
        << ProcessorRow << kProcessorKey
        << QJsonObject { { u"ProcessorNameString"_s, u"Chip A"_s } } << u"Chip A"_s << true;
    QTest::newRow("processor tells its speed")
        << ProcessorRow << kProcessorKey
        << QJsonObject { { u"ProcessorNameString"_s, u"Chip A @ 2.30GHz"_s }, { u"~MHz"_s, 2295 } }
        << u"Chip A @ 2.30GHz"_s << true;
    QTest::newRow("processor with place markers")
        << ProcessorRow << kProcessorKey
        << QJsonObject { { u"ProcessorNameString"_s, u"Chip %2 %1"_s }, { u"~MHz"_s, 2295 } }
        << u"Chip %2 %1 · 2.3 GHz"_s << true;
    QTest::newRow("framework newest")
        << DotNetRow << kDotNetKey << QJsonObject { { u"Release"_s, 533320 } } << u"4.8.1"_s
        << true;
    QTest::newRow("framework old")
        << DotNetRow << kDotNetKey << QJsonObject { { u"Release"_s, 378389 } } << u"4.x"_s << true;
    QTest::newRow("framework no number")
        << DotNetRow << kDotNetKey << QJsonObject { { u"Release"_s, u"new"_s } }
        << u"Not detected"_s << false;
    QTest::newRow("framework's other value")
        << DotNetRow << kDotNetKey << QJsonObject { { u"Version"_s, 528040 } } << u"Not detected"_s
        << false;
    QTest::newRow("control on") << SmartAppControlRow << kPolicyKey
                                << QJsonObject { { u"VerifiedAndReputablePolicyState"_s, 1 } }
                                << u"On — blocks the app"_s << false;
    QTest::newRow("control off") << SmartAppControlRow << kPolicyKey
                                 << QJsonObject { { u"VerifiedAndReputablePolicyState"_s, 0 } }
                                 << u"Off"_s << true;
}

void TestProbes::rowsOneByOne()
{
    QFETCH(const Row, row);
    QFETCH(const QString, key);
    QFETCH(const QJsonObject, values);
    QFETCH(QString, value);
    QFETCH(const bool, ok);
    m_sandbox->setRegistry({ { key, values } });
    const QList<CheckResult> results = runSystemChecks(QString());
    QCOMPARE(results.size(), 9);
    value.replace(u"{name}"_s, QSysInfo::prettyProductName()).replace(u"{bits}"_s, wordSize());
    QCOMPARE(results[row].value, value);
    QCOMPARE(results[row].ok, ok);
}

void TestProbes::webViewRoots_data()
{
    QTest::addColumn<QJsonValue>("machine32");
    QTest::addColumn<QJsonValue>("machine");
    QTest::addColumn<QJsonValue>("user");
    QTest::addColumn<QString>("value");
    const QJsonValue none = QJsonValue::Undefined;
    const QJsonValue a = u"1.0"_s;
    const QJsonValue b = u"2.0"_s;
    const QJsonValue c = u"3.0"_s;
    const QString missing = u"Missing — will install"_s;
    QTest::newRow("32-bit view") << a << none << none << u"1.0"_s;
    QTest::newRow("machine-wide") << none << b << none << u"2.0"_s;
    QTest::newRow("per user") << none << none << c << u"3.0"_s;
    QTest::newRow("all three") << a << b << c << u"1.0"_s;
    QTest::newRow("last two") << none << b << c << u"2.0"_s;
    QTest::newRow("empty first") << QJsonValue(u""_s) << b << c << u"2.0"_s;
    QTest::newRow("empty twice") << QJsonValue(u""_s) << QJsonValue(u""_s) << c << u"3.0"_s;
    QTest::newRow("all empty") << QJsonValue(u""_s) << QJsonValue(u""_s) << QJsonValue(u""_s)
                               << missing;
    QTest::newRow("none") << none << none << none << missing;
    QTest::newRow("wrong type first")
        << QJsonValue(QJsonArray { u"1.0"_s }) << none << c << u"3.0"_s;
}

void TestProbes::webViewRoots()
{
    QFETCH(const QJsonValue, machine32);
    QFETCH(const QJsonValue, machine);
    QFETCH(const QJsonValue, user);
    QFETCH(const QString, value);
    QJsonObject registry;
    const auto store = [&registry](const QString &key, const QJsonValue &version) {
        if (!version.isUndefined())
            registry[key] = QJsonObject { { u"pv"_s, version } };
    };
    store(kWebViewMachine32, machine32);
    store(kWebViewMachine, machine);
    store(kWebViewUser, user);
    m_sandbox->setRegistry(registry);
    const CheckResult result = runSystemChecks(QString()).value(WebViewRow);
    QCOMPARE(result.value, value);
    QCOMPARE(result.ok, !value.startsWith(u"Missing"_s));
}

void TestProbes::smartAppControlOn_data()
{
    QTest::addColumn<QJsonValue>("state");
    QTest::addColumn<bool>("on");
    QTest::newRow("none") << QJsonValue(QJsonValue::Undefined) << false;
    QTest::newRow("0") << QJsonValue(0) << false;
    QTest::newRow("1") << QJsonValue(1) << true;
    QTest::newRow("1 as text") << QJsonValue(u"1"_s) << true;
    QTest::newRow("2") << QJsonValue(2) << false;
    QTest::newRow("3") << QJsonValue(3) << false;
    QTest::newRow("-1") << QJsonValue(-1) << false;
    QTest::newRow("no number") << QJsonValue(u"on"_s) << false;
}

void TestProbes::smartAppControlOn()
{
    QFETCH(const QJsonValue, state);
    QFETCH(const bool, on);
    QJsonObject policy;
    if (!state.isUndefined())
        policy[u"VerifiedAndReputablePolicyState"_s] = state;
    m_sandbox->setRegistry({ { kPolicyKey, policy } });
    QCOMPARE(isSmartAppControlOn(), on);
}

void TestProbes::memoryIsThatOfTheMachine()
{
    QVERIFY(totalMemory().has_value());
    QCOMPARE(runSystemChecks(QString()).value(MemoryRow), judgeMemory(totalMemory()));
}

void TestProbes::vcRuntimeIsTwoFiles_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("present");
    const QString first = u"vcruntime140.dll"_s;
    const QString second = u"vcruntime140_1.dll"_s;
    QTest::newRow("none") << QStringList() << false;
    QTest::newRow("first only") << QStringList { first } << false;
    QTest::newRow("second only") << QStringList { second } << false;
    QTest::newRow("both") << QStringList { first, second } << true;
}

void TestProbes::vcRuntimeIsTwoFiles()
{
    QFETCH(const QStringList, files);
    for (const QString &file : files)
        m_sandbox->write(u"system/"_s + file, "library");
    QTEST(hasVcRuntime(m_sandbox->path(u"system"_s)), "present");
}

void TestProbes::vcRuntimeIsThatOfTheSystem()
{
#ifdef Q_OS_WIN
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
    QVERIFY(!hasVcRuntime(QString()));
    QVERIFY(!vcRuntimePresent());
#endif
}

void TestProbes::everyRunReadsAfresh()
{
    QVERIFY(!runSystemChecks(QString()).value(DotNetRow).ok);
    m_sandbox->setRegistry({ { kDotNetKey, QJsonObject { { u"Release"_s, 461808 } } } });
    QCOMPARE(runSystemChecks(QString()).value(DotNetRow).value, u"4.7.2"_s);
    m_sandbox->setRegistry({ { kDotNetKey, QJsonObject { { u"Release"_s, 460798 } } } });
    QCOMPARE(runSystemChecks(QString()).value(DotNetRow).value, u"4.7"_s);
}

QTEST_GUILESS_MAIN(TestProbes)
#include "tst_probes.moc"
