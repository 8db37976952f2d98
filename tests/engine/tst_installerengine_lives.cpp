#include "engine/enginescene.h"
#include "engine/installerengine.h"
#include "support/environment.h"
#include "support/footprint.h"
#include "support/sandbox.h"
#include "support/timercounter.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::Literals::StringLiterals;

// Many runs in one process, one after the other and all at once: none leaves anything behind, and
// none takes another's files for its own.
class TestInstallerEngineLives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void oneAfterTheOther();
    void allAtOnce();
};

namespace {

constexpr int kLives = 200;
constexpr int kWarmUp = 20; ///< lives after which everything is there that is made only once
constexpr int kAtOnce = 50;
constexpr int kPatience = 60'000; ///< milliseconds
constexpr int kMostGrowth = 128; ///< kB in all lives

} // namespace

void TestInstallerEngineLives::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineLives::oneAfterTheOther()
{
    Sandbox sandbox;
    InstallerEngine engine;
    engine.setSetupExecutable(Sandbox::setupEngine());
    EngineRecord record(engine);
    const QString folder = sandbox.path(u"app"_s);

    qint64 memory = 0;
    qsizetype handles = 0;
    for (int life = 0; life < kLives; ++life) {
        // Every tenth one fails, which takes other ways and keeps a log.
        const bool fails = life % 10 == 9;
        sandbox.setScenario(fails ? "files = 2\nexit-code = 4\nmessage-box = Full." : "files = 2");
        engine.startInstall(folder, {});
        QVERIFY(record.waitForEnd());
        QCOMPARE(record.successes, QList<bool> { !fails });
        sandbox.setScenario({});
        engine.startUninstall(folder + u"/unins000.exe"_s);
        QVERIFY(record.waitForEnd(2));
        QCOMPARE(record.successes.last(), true);
        QVERIFY(!QFile::exists(folder));
        QVERIFY(sandbox.tempFiles().size() <= 2); // the removal's status, and the kept log

        record.settle();
        record.told.clear();
        record.fractions.clear();
        record.files.clear();
        record.statuses.clear();
        record.errors.clear();
        record.successes.clear();
        if (life == kWarmUp) {
            memory = memoryInUse();
            handles = openHandles();
        }
        // Of the ended run's objects only the last process is still there.
        QCOMPARE(engine.findChildren<QProcess *>().size(), 1);
    }
    engine.stop();
    QCOMPARE(sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
    QTRY_VERIFY(engine.findChildren<QObject *>().isEmpty());

    TimerCounter timers;
    QTest::qWait(200); // as long as four polls
    // Waiting itself is done with at most one timer.
    QVERIFY2(timers.fired <= 1, qPrintable(QString::number(timers.fired)));
    if (memory < 0 || handles < 0)
        QSKIP("neither memory nor handles are told here");
    QVERIFY2(openHandles() <= handles, qPrintable(u"%1 -> %2"_s.arg(handles).arg(openHandles())));
    const qint64 growth = memoryInUse() - memory;
    qInfo("memory grew by %lld kB in %d lives", growth, kLives - kWarmUp);
#ifndef __SANITIZE_ADDRESS__ // which keeps freed memory on purpose
    QVERIFY2(growth < kMostGrowth, qPrintable(QString::number(growth)));
#endif
}

void TestInstallerEngineLives::allAtOnce()
{
    struct Life
    {
        InstallerEngine engine;
        EngineRecord record { engine };
    };
    Sandbox sandbox;
    std::vector<std::unique_ptr<Life>> lives;
    const auto number = [](int i) { return u"number %1."_s.arg(i); };
    for (int i = 0; i < kAtOnce; ++i) {
        Life &life = *lives.emplace_back(std::make_unique<Life>());
        life.engine.setSetupExecutable(Sandbox::setupEngine());
        // Each engine reads a text of its own, at its start.
        const QString scenario = sandbox.write(
            u"scenario %1"_s.arg(i),
            u"delay-ms = 10\nstatus = I am %1\nprogress = %2\nfile = /of/%1\n"_s.arg(number(i))
                .arg(i + 1)
                .toUtf8());
        setVariable("VARNEL_ENGINE_SCENARIO", scenario);
        setVariable("VARNEL_REGISTRY_JSON", sandbox.path(u"registry %1"_s.arg(i)));
        life.engine.startInstall(sandbox.path(u"app %1"_s.arg(i)), {});
    }
    const auto haveAllEnded = [&lives] {
        return std::all_of(lives.begin(), lives.end(),
                           [](const auto &life) { return !life->record.successes.isEmpty(); });
    };
    QVERIFY(QTest::qWaitFor(haveAllEnded, kPatience));

    QCOMPARE(sandbox.tempFiles().size(), 2 * kAtOnce);
    for (int i = 0; i < kAtOnce; ++i) {
        EngineRecord &record = lives[size_t(i)]->record;
        const double progress = (i + 1) / 100.0;
        QCOMPARE(record.successes, QList<bool> { true });
        QCOMPARE(record.statuses, QStringList(u"I am "_s + number(i)));
        QCOMPARE(record.fractions, (QList<double> { progress, 1.0 }));
        const QString own = QDir::toNativeSeparators(sandbox.path(u"app %1/"_s.arg(i)));
        for (const QString &file : std::as_const(record.files))
            QVERIFY2(file.startsWith(own) || file == u"/of/"_s + number(i), qPrintable(file));
        QVERIFY(QFile::exists(sandbox.path(u"app %1/unins000.exe"_s.arg(i))));
    }
    lives.clear();
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestInstallerEngineLives)
#include "tst_installerengine_lives.moc"
