#include "runs.h"

#include "files.h"
#include "payload.h"
#include "platform.h"
#include "registration.h"

#include "product/product.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr Scenario::Duration kInstallTime { 6000 };
constexpr Scenario::Duration kUninstallTime { 4000 };

/// The exit code of an uninstaller without a list.
constexpr int kCouldNotStart = 1;

const QString kCopying = u"Extracting application files…"_s;
const QString kRemovingFiles = u"Removing application files…"_s;

/// Parts of a setup that take their time without writing files of the application.
const QStringList kLaterSteps {
    u"Installing WebView2 Runtime…"_s,
    u"Installing WebView2 Runtime…"_s,
    u"Registering .sch and .pcb file types…"_s,
    u"Registering .sch and .pcb file types…"_s,
    u"Creating shortcuts…"_s,
    u"Creating shortcuts…"_s,
};
const QStringList kLaterUninstallSteps { u"Removing shortcuts…"_s, u"Unregistering file types…"_s };

/// What an installation has made, kept as JSON beside the uninstaller: nothing else may be removed.
struct UninstallList
{
    QStringList files;
    QStringList folders; ///< Only those that were not there before.
};

constexpr QStringView kListFile = u"unins000.dat";
const QString kFiles = u"files"_s;
const QString kFolders = u"folders"_s;

/// Nothing if there is no list or it cannot be understood.
std::optional<UninstallList> readUninstallList(const QString &file)
{
    const QJsonDocument document = QJsonDocument::fromJson(readFile(file).value_or(QByteArray()));
    if (!document.isObject())
        return {};
    return UninstallList { document[kFiles].toVariant().toStringList(),
                           document[kFolders].toVariant().toStringList() };
}

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

class InstallRun
{
public:
    explicit InstallRun(Session &session) : m_session(session), m_log(session.log()) {}

    int run()
    {
        m_session.start();
        m_log.line(u"Starting the installation process."_s);
        try {
            m_folder = chosenFolder(m_session.options().values[u"dir"_s]);
            createFolder(m_folder);
        } catch (FileError &error) {
            error.exitCode = FileError::PreparingFailed;
            throw;
        }
        install();
        m_log.line(u"Installation process succeeded."_s);
        m_log.line(u"Need to restart Windows? No"_s);
        return 0;
    }

private:
    static QString chosenFolder(QString folder)
    {
        if (folder.isEmpty())
            folder = QDir::homePath() + u'/' + Product::kName;
        return QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    }

    void install()
    {
        const QStringList files = payload(m_session.scenario().fileCount);
        m_session.beginSteps(files.size() + kLaterSteps.size(), kInstallTime, kCopying);
        copyFiles(files);
        if (m_session.options().values[u"tasks"_s].contains("desktopicon"_L1, Qt::CaseInsensitive))
            createShortcut();
        leaveUninstaller();
        for (const QString &status : kLaterSteps)
            m_session.completeStep({}, status);
        m_session.reach(Stage::End);
        registerProduct(m_folder);
    }

    void createFolder(const QString &folder)
    {
        const QFileInfo info(folder);
        if (info.isDir())
            return;
        if (!info.isRoot())
            createFolder(info.path());
        m_log.line(u"Creating directory: "_s + native(folder));
        if (!QDir().mkdir(folder))
            failOn(u"create the directory"_s, folder, qt_error_string());
        m_made.folders << folder;
    }

    void copyFiles(const QStringList &files)
    {
        for (qsizetype i = 0; i < files.size(); ++i) {
            if (i == files.size() / 2)
                m_session.reach(Stage::Half);
            const QString target = m_folder + u'/' + files[i];
            createFolder(QFileInfo(target).path());
            m_log.line(u"-- File entry --"_s);
            m_log.line(u"Dest filename: "_s + native(target));
            m_log.line(u"Time stamp of our file: 2026-10-01 12:00:00.000"_s);
            if (QFile::exists(target))
                m_log.line(u"Dest file exists."_s);
            m_log.line(u"Installing the file."_s);
            if (files[i] == Product::kExecutable)
                platform::writeApplication(target);
            else
                writeFile(target, contentOf(files[i]));
            m_made.files << target;
            m_log.line(u"Successfully installed the file."_s);
            m_session.completeStep(native(target), kCopying);
        }
    }

    void createShortcut()
    {
        QString desktop = qEnvironmentVariable("XDG_DESKTOP_DIR");
        if (desktop.isEmpty())
            desktop = QDir::homePath() + u"/Desktop"_s;
        const QString file = desktop + u'/' + Product::kName + u".desktop"_s;
        m_log.line(u"-- Icon entry --"_s);
        m_log.line(u"Dest filename: "_s + native(file));
        createFolder(desktop);
        m_log.line(u"Creating the icon."_s);
        const QString program = native(m_folder + u'/' + Product::kExecutable);
        writeFile(file,
                  u"[Desktop Entry]\nType=Application\nName=%1\nExec=\"%2\"\n"_s
                      .arg(Product::kName, program)
                      .toUtf8());
        makeExecutable(file);
        m_made.files << file;
        m_log.line(u"Successfully created the icon."_s);
    }

    void leaveUninstaller()
    {
        m_log.line(u"Saving uninstall information."_s);
        copyFile(QCoreApplication::applicationFilePath(), m_folder + kUninstaller);

        // An update forgets nothing that an earlier version has made.
        const QString listFile = m_folder + u'/' + kListFile;
        const auto earlier = readUninstallList(listFile).value_or(UninstallList());
        const auto both = [](QStringList made, const QStringList &madeEarlier) {
            made += madeEarlier;
            made.removeDuplicates();
            return QJsonArray::fromStringList(made);
        };
        const QJsonObject list { { kFiles, both(m_made.files, earlier.files) },
                                 { kFolders, both(m_made.folders, earlier.folders) } };
        writeFile(listFile, QJsonDocument(list).toJson());
    }

    Session &m_session;
    EngineLog &m_log;
    QString m_folder;
    UninstallList m_made;
};

void removeFile(const QString &name, EngineLog &log)
{
    if (!QFileInfo(name).isFile())
        return;
    log.line(u"Deleting file: "_s + native(name));
    if (QFile file(name); !file.remove())
        log.line(u"Left in place: "_s % file.errorString() % u'.');
}

void removeUninstaller(const QString &folder, EngineLog &log)
{
    log.line(u"Deleting Uninstall data files."_s);
    const QString program = QCoreApplication::applicationFilePath();
    const QString parked = folder + u"-uninstaller-"_s
        + QString::number(QCoreApplication::applicationPid()) + u".exe"_s;
    // Windows deletes no running program, but moves it out of the folder that is to go.
    if (!QFile::remove(program) && !QFile::rename(program, parked))
        log.line(u"The uninstaller stays behind: it is in use."_s);
}

void removeEmptyFolders(QStringList folders, EngineLog &log)
{
    // What is in a folder sorts after it.
    folders.sort();
    for (auto folder = folders.crbegin(); folder != folders.crend(); ++folder) {
        if (QDir().rmdir(*folder))
            log.line(u"Deleting directory: "_s + native(*folder));
    }
}

} // namespace

int runInstall(Session &session)
{
    return InstallRun(session).run();
}

int runUninstall(Session &session)
{
    session.start();
    EngineLog &log = session.log();
    const QString folder = QCoreApplication::applicationDirPath();
    const QString listFile = folder + u'/' + kListFile;
    const auto list = readUninstallList(listFile);
    if (!list) {
        log.messageBox(u"The file \""_s % native(listFile)
                       % u"\" is not there or cannot be read. Cannot uninstall."_s);
        return kCouldNotStart;
    }
    session.beginSteps(list->files.size() + kLaterUninstallSteps.size(), kUninstallTime,
                       kRemovingFiles);
    for (qsizetype i = 0; i < list->files.size(); ++i) {
        if (i == list->files.size() / 2)
            session.reach(Stage::Half);
        removeFile(list->files[i], log);
        session.completeStep(native(list->files[i]), kRemovingFiles);
    }
    for (const QString &status : kLaterUninstallSteps)
        session.completeStep({}, status);
    session.reach(Stage::End);
    unregisterProduct();
    removeFile(listFile, log);
    removeUninstaller(folder, log);
    removeEmptyFolders(list->folders + QStringList(folder), log);
    log.line(u"Uninstallation process succeeded."_s);
    return 0;
}
