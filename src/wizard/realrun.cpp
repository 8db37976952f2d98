#include "wizard/realrun.h"

#include "bundle/carriedengine.h"
#include "engine/installerengine.h"
#include "files/guardedfile.h"
#include "files/programsinuse.h"
#include "files/signature.h"
#include "system/installation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kUninstallerInterval = 100ms;

/// An uninstaller that was started from the system's list of programs hands over to this program
/// and ends, which takes a moment.
constexpr auto kUninstallerTimeout = 15s;

/// Whether the uninstaller still runs: it keeps its .dat file open without sharing.
bool isUninstallerBusy(const QString &uninstaller)
{
    const QFileInfo program(uninstaller);
    const QString data = program.absolutePath() + u'/' + program.completeBaseName() + ".dat"_L1;
    GuardedFile probe;
    return QFileInfo::exists(data) && !probe.hold(data);
}

/// Whether a program of the copy that `uninstaller` removes runs. The uninstaller itself is left
/// out, because our own lock on it looks like use.
bool isApplicationInUse(const QString &uninstaller)
{
    const QString folder = QFileInfo(uninstaller).absolutePath();
    return isInstallFolder(folder)
        && hasProgramsInUse(folder, { uninstaller, QCoreApplication::applicationFilePath() });
}

} // namespace

RealRun::RealRun(InstallerEngine &engine, CarriedEngine *carried, const SetupChoices &choices)
    : m_engine(engine), m_carried(carried), m_choices(choices)
{
    connect(&engine, &InstallerEngine::progress, this, &SetupRun::progress);
    connect(&engine, &InstallerEngine::currentFile, this, &SetupRun::currentFile);
    connect(&engine, &InstallerEngine::statusChanged, this, &SetupRun::statusChanged);
    connect(&engine, &InstallerEngine::finished, this, &SetupRun::finished);
    m_uninstallerTimer.setInterval(kUninstallerInterval);
    connect(&m_uninstallerTimer, &QTimer::timeout, this, &RealRun::removeWhenPossible);
}

RealRun::~RealRun()
{
    if (m_check)
        m_check->wait();
}

void RealRun::start()
{
    if (m_choices.mode == RunMode::Uninstall) {
        m_uninstallerDeadline.setRemainingTime(kUninstallerTimeout);
        removeWhenPossible();
    } else if (m_engine.setupExecutable().isEmpty() && m_carried) {
        connect(m_carried, &CarriedEngine::finished, this, &RealRun::onUnpacked);
        m_carried->start();
        m_carried->hurry();
        if (m_carried->isFinished())
            onUnpacked();
    } else {
        checkPublisher(m_engine.setupExecutable());
    }
}

void RealRun::onUnpacked()
{
    if (const QString error = m_carried->error(); !error.isEmpty()) {
        Q_EMIT finished(false, error);
        return;
    }
    m_engine.setSetupExecutable(m_carried->path());
    m_carried->release(); // now the engine holds it
    checkPublisher(m_carried->path());
}

void RealRun::removeWhenPossible()
{
    m_uninstallerTimer.stop();
    if (!QFileInfo(m_choices.uninstaller).isFile()) {
        m_engine.startUninstall({}); // that is reported, even if the file comes back meanwhile
        return;
    }
    if (isUninstallerBusy(m_choices.uninstaller) && !m_uninstallerDeadline.hasExpired()) {
        m_uninstallerTimer.start();
        return;
    }
    // The uninstaller would delete what it can and say that all is well.
    if (isApplicationInUse(m_choices.uninstaller)) {
        Q_EMIT finished(false, tr("Varnel Schematics is running. Close it and try again."));
        return;
    }
    checkPublisher(m_choices.uninstaller);
}

void RealRun::checkPublisher(const QString &program)
{
    // Lock the file first, so that it cannot be replaced between check and start.
    const QString error = m_engine.guard(program);
    if (!isThisProgramSigned())
        return startEngine(); // which reports the error
    if (!error.isEmpty()) {
        Q_EMIT finished(false, error);
        return;
    }
    // Both files are read as a whole, which may take seconds.
    const QString self = QCoreApplication::applicationFilePath();
    m_check.reset(QThread::create(
        [this, self, program] { m_isTrusted = isFromSamePublisher(self, program); }));
    connect(m_check.get(), &QThread::finished, this, [this] {
        if (m_isTrusted)
            startEngine();
        else
            Q_EMIT finished(false, notOurSignatureSentence());
    });
    m_check->start();
}

void RealRun::startEngine()
{
    switch (m_choices.mode) {
    case RunMode::Install:
        m_engine.startInstall(m_choices.folder,
                              m_choices.desktopShortcut ? QStringList { u"desktopicon"_s }
                                                        : QStringList());
        break;
    case RunMode::Update:
        // startInstall() makes of it the folder that the user was shown.
        m_engine.startInstall(m_choices.recordedFolder, {});
        break;
    case RunMode::Uninstall:
        m_engine.startUninstall(m_choices.uninstaller);
        break;
    }
}
