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

constexpr auto kLookInterval = 100ms;

/// An uninstaller that was started from the system's list of programs hands over to this program
/// and ends, which takes a moment.
constexpr auto kLookTimeout = 15s;

/// Whether an uninstaller still runs: it keeps its data to itself.
bool isUninstallerBusy(const QString &uninstaller)
{
    const QFileInfo program(uninstaller);
    const QString data = program.absolutePath() + u'/' + program.completeBaseName() + ".dat"_L1;
    GuardedFile probe;
    return QFileInfo::exists(data) && !probe.hold(data);
}

/// Whether a program of the copy that `uninstaller` removes runs. The uninstaller is itself held
/// by us, which looks like use.
bool isApplicationInUse(const QString &uninstaller)
{
    const QFileInfo program(uninstaller);
    if (!program.isFile())
        return false; // its folder would be the current one
    const QString folder = program.absolutePath();
    return QDir(folder) == QDir(QDir::fromNativeSeparators(installLocation()))
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
    m_look.setInterval(kLookInterval);
    connect(&m_look, &QTimer::timeout, this, &RealRun::removeWhenPossible);
}

RealRun::~RealRun()
{
    if (m_check)
        m_check->wait();
}

void RealRun::start()
{
    if (m_choices.mode == RunMode::Uninstall) {
        m_lookDeadline.setRemainingTime(kLookTimeout);
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
    if (isUninstallerBusy(m_choices.uninstaller) && !m_lookDeadline.hasExpired()) {
        m_look.start();
        return;
    }
    m_look.stop();
    // The uninstaller would delete what it can and say that all is well.
    if (isApplicationInUse(m_choices.uninstaller)) {
        Q_EMIT finished(false, tr("Varnel Schematics is running. Close it and try again."));
        return;
    }
    checkPublisher(m_choices.uninstaller);
}

void RealRun::checkPublisher(const QString &program)
{
    // First of all, so that what is checked is what is started.
    if (const QString error = m_engine.guard(program); !error.isEmpty()) {
        Q_EMIT finished(false, error);
        return;
    }
    if (!isThisProgramSigned() || !QFileInfo(program).isFile())
        return startEngine();
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
        // InstallerEngine makes the folder that was shown of it.
        m_engine.startInstall(m_choices.recordedFolder, {});
        break;
    case RunMode::Uninstall:
        m_engine.startUninstall(m_choices.uninstaller);
        break;
    }
}
