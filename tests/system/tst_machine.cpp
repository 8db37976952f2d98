#include "support/stricttest.h"
#include "system/machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#ifdef Q_OS_WIN
#include <windows.h>

#include <psapi.h>
#endif

using namespace Qt::Literals::StringLiterals;

class TestMachine : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void memoryIsThatOfTheKernel();
    void processorIsThatOfTheKernel();
    void systemFolderHoldsLibraries();
    void reducedMotionOfTheDesktop();
};

void TestMachine::memoryIsThatOfTheKernel()
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

void TestMachine::processorIsThatOfTheKernel()
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

void TestMachine::systemFolderHoldsLibraries()
{
    const QString folder = systemFolder();
#ifdef Q_OS_WIN
    QVERIFY(QFileInfo::exists(folder + "/kernel32.dll"_L1));
    QVERIFY(QDir::isAbsolutePath(folder));
#else
    QCOMPARE(folder, QString());
#endif
}

void TestMachine::reducedMotionOfTheDesktop()
{
#ifdef Q_OS_WIN
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

QTEST_GUILESS_MAIN(TestMachine)
#include "tst_machine.moc"
