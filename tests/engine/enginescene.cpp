#include "engine/enginescene.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

EngineRecord::EngineRecord(InstallerEngine &engine) : m_engine(engine)
{
    connect(&engine, &InstallerEngine::progress, this, [this](double fraction) {
        events << u"progress "_s + QString::number(fraction);
        fractions << fraction;
    });
    connect(&engine, &InstallerEngine::currentFile, this, [this](const QString &path) {
        events << u"file "_s + path;
        files << path;
    });
    connect(&engine, &InstallerEngine::statusChanged, this, [this](const QString &status) {
        events << u"status "_s + status;
        statuses << status;
    });
    connect(&engine, &InstallerEngine::finished, this, [this](bool ok, const QString &error) {
        events << (ok ? u"finished"_s : u"failed "_s + error);
        successes << ok;
        errors << error;
    });
}

bool EngineRecord::waitForEnd(int runs)
{
    return QTest::qWaitFor([this, runs] { return successes.size() >= runs; }, kPatience);
}

void EngineRecord::settle()
{
    const auto isOver = [this] {
        const auto processes = m_engine.findChildren<QProcess *>();
        return std::all_of(processes.begin(), processes.end(), [](const QProcess *process) {
            return process->state() == QProcess::NotRunning;
        });
    };
    if (!QTest::qWaitFor(isOver, kPatience))
        qFatal("The engine's process does not end");
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

EngineScene::EngineScene(const QByteArray &scenario)
{
    sandbox.setScenario(scenario);
    engine.setSetupExecutable(Sandbox::setupEngine());
}

void EngineScene::start()
{
    engine.startInstall(sandbox.path(u"app"_s), {});
}

bool EngineScene::toTheEnd(int runs)
{
    start();
    const bool hasEnded = record.waitForEnd(runs);
    record.settle();
    return hasEnded;
}

void EngineScene::startRemoval()
{
    const QString uninstaller = sandbox.path(u"unins000.exe"_s);
    if (!QFile::copy(Sandbox::setupEngine(), uninstaller))
        qFatal("Cannot make an uninstaller");
    engine.startUninstall(uninstaller);
}

void EngineScene::writeStatus(const QByteArray &text) const
{
    sandbox.write(u"temp/"_s + QFileInfo(engine.statusFilePath()).fileName(), text);
}

void EngineScene::writeLog(const QByteArray &text) const
{
    sandbox.write(u"temp/"_s + QFileInfo(engine.statusFilePath()).fileName() + u".log"_s, text);
}

QProcess *EngineScene::process() const
{
    return engine.findChild<QProcess *>();
}

QString EngineScene::keptLog() const
{
    return QDir(sandbox.tempFolder()).absoluteFilePath(u"varnel_setup_last.log"_s);
}

QByteArray EngineScene::keptText() const
{
    return sandbox.read(u"temp/varnel_setup_last.log"_s);
}

HangingScene::HangingScene(const QByteArray &scenario)
    : EngineScene("stall = forever\nstage = half\n" + scenario)
{
    start();
    const QString status = engine.statusFilePath();
    if (!QTest::qWaitFor([&] { return QFile::exists(status); }, kPatience))
        qFatal("The engine does not begin");
    processId = process()->processId();
}
