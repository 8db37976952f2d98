#include "engine/installerengine.h"

#include "engine/enginearguments.h"
#include "engine/enginerun.h"
#include "files/installpath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

QString newStatusFilePath(const QString &name)
{
    return QDir::temp().absoluteFilePath(name.arg(QUuid::createUuid().toString(QUuid::Id128)));
}

} // namespace

InstallerEngine::InstallerEngine(QObject *parent) : QObject(parent)
{
    // The end of the session ends the program right after this signal, without any destructor.
    if (QCoreApplication *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &InstallerEngine::stop);
}

InstallerEngine::~InstallerEngine()
{
    stop();
}

void InstallerEngine::setSetupExecutable(const QString &path)
{
    m_setupExecutable = path;
    guard(path);
}

QString InstallerEngine::guard(const QString &program)
{
    if (m_guarded.isHeld() && m_guarded.path() == program)
        return {};
    m_guarded.release();
    return program.isEmpty() || m_guarded.hold(program) ? QString() : m_guarded.errorString();
}

void InstallerEngine::startInstall(const QString &folder, const QStringList &tasks)
{
    if (m_setupExecutable.isEmpty()) {
        Q_EMIT finished(false, tr("No setup engine was supplied."));
        return;
    }
    const QString target = installFolder(folder);
    if (target.contains(u'"')) {
        // Windows has no such names. Elsewhere the engine would install into another folder.
        Q_EMIT finished(false,
                        tr("Setup cannot install into a folder whose name has a double quote."));
        return;
    }
    const QString statusFile = newStatusFilePath(u"varnel_setup_%1.ini"_s);
    const QString logFile = statusFile + ".log"_L1;
    startRun(m_setupExecutable, installArguments(target, tasks, statusFile, logFile), statusFile,
             logFile);
}

void InstallerEngine::startUninstall(const QString &uninstallerPath)
{
    if (!QFileInfo(uninstallerPath).isFile()) {
        Q_EMIT finished(false, tr("The uninstaller could not be found."));
        return;
    }
    const QString statusFile = newStatusFilePath(u"varnel_uninst_%1.ini"_s);
    startRun(uninstallerPath, uninstallArguments(statusFile), statusFile, {});
}

void InstallerEngine::startRun(const QString &program, const QString &arguments,
                               const QString &statusFilePath, const QString &logFilePath)
{
    stop();
    // A file that is not there is left for its start to report.
    if (const QString error = guard(program); !error.isEmpty() && QFileInfo(program).isFile()) {
        Q_EMIT finished(false, error);
        return;
    }
    m_run = new EngineRun(statusFilePath, logFilePath, this);
    connect(m_run, &EngineRun::progress, this, &InstallerEngine::progress);
    connect(m_run, &EngineRun::currentFile, this, &InstallerEngine::currentFile);
    connect(m_run, &EngineRun::statusChanged, this, &InstallerEngine::statusChanged);
    connect(m_run, &EngineRun::logKept, this,
            [this](const QString &path) { m_lastLogPath = path; });
    connect(m_run, &EngineRun::finished, this, &InstallerEngine::finished);
    m_run->start(program, arguments);
    m_guarded.release(); // an uninstaller deletes itself
}

void InstallerEngine::stop()
{
    if (EngineRun *run = std::exchange(m_run, nullptr)) {
        run->stop();
        run->deleteLater(); // one of its signals may have led here
    }
}

QString InstallerEngine::statusFilePath() const
{
    return m_run ? m_run->statusFilePath() : QString();
}

QString InstallerEngine::logFilePath() const
{
    return m_run ? m_run->logFilePath() : QString();
}

void InstallerEngine::poll()
{
    if (m_run)
        m_run->poll();
}
