#include "wizard/realrun.h"

#include "bundle/carriedengine.h"
#include "engine/installerengine.h"
#include "files/guardedfile.h"
#include "files/programsinuse.h"
#include "files/signature.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <chrono>
#include <memory>

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
    // The uninstaller would delete what it can and say that all is well. It is itself held by us,
    // which looks like use.
    if (hasProgramsInUse(QFileInfo(m_choices.uninstaller).path(),
                         { m_choices.uninstaller, QCoreApplication::applicationFilePath() })) {
        Q_EMIT finished(false, tr("Varnel Schematics is running. Close it and try again."));
        return;
    }
    checkPublisher(m_choices.uninstaller);
}

void RealRun::checkPublisher(const QString &program)
{
    const QString self = QCoreApplication::applicationFilePath();
    if (!hasSignature(self))
        return startEngine();
    // Both files are read as a whole, which may take seconds. Nobody waits for the thread when the
    // window is closed meanwhile.
    auto isTrusted = std::make_shared<bool>(false);
    QThread *thread = QThread::create(
        [self, program, isTrusted] { *isTrusted = isFromSamePublisher(self, program); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &QThread::finished, this, [this, isTrusted] {
        if (*isTrusted)
            startEngine();
        else
            Q_EMIT finished(false, notOurSignatureSentence());
    });
    thread->start();
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
