#include "support/sandbox.h"

#include "product/product.h"

#include "support/environment.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long the program that was started last may take to end.
constexpr auto kLastProgram = 5s;

} // namespace

Sandbox::Sandbox() : m_registry(path(u"registry.json"_s))
{
    for (const QString &folder :
         { u"temp"_s, u"home"_s, u"desktop"_s, u"appdata"_s, u"programs"_s })
        QDir(m_folder.path()).mkpath(folder);
    for (const char *variable : { "TMPDIR", "TMP", "TEMP" })
        changeVariable(variable, tempFolder());
    for (const char *variable : { "HOME", "USERPROFILE" })
        changeVariable(variable, path(u"home"_s));
    changeVariable("XDG_DESKTOP_DIR", path(u"desktop"_s));
    changeVariable("APPDATA", path(u"appdata"_s));
    changeVariable("ProgramFiles", path(u"programs"_s));
    changeVariable("VARNEL_REGISTRY_JSON", path(u"registry.json"_s));
    changeVariable("VARNEL_LAUNCH_RECORD", path(u"launches.txt"_s));
    changeVariable("VARNEL_ENGINE_RECORD", path(u"engine-runs.txt"_s));
    changeVariable("VARNEL_ENGINE_DELAY_MS", u"0"_s);
    changeVariable("VARNEL_ENGINE_SCENARIO", path(u"scenario.txt"_s));
    setScenario({});
}

Sandbox::~Sandbox()
{
    for (const Variable &variable : std::as_const(m_saved)) {
        if (variable.wasSet)
            setVariable(variable.name, variable.value);
        else
            qunsetenv(variable.name);
    }
    // On Windows the folder of a running program cannot be removed.
    const QDeadlineTimer limit(kLastProgram);
    while (!QDir(m_folder.path()).removeRecursively() && !limit.hasExpired())
        QThread::msleep(10);
}

void Sandbox::changeVariable(const char *name, const QString &value)
{
    m_saved.append({ name, qEnvironmentVariable(name), qEnvironmentVariableIsSet(name) });
    setVariable(name, QDir::toNativeSeparators(value));
}

QString Sandbox::setupEngine()
{
    return QString::fromUtf8(STANDIN_ENGINE_PATH);
}

QString Sandbox::path(const QString &name) const
{
    return m_folder.filePath(name);
}

QString Sandbox::nativePath(const QString &name) const
{
    return QDir::toNativeSeparators(path(name));
}

QString Sandbox::oddName()
{
    // Windows knows no names with angle brackets.
    return QDir::separator() == u'\\' ? u"a&b %2 %1"_s : u"a&b <i>%2 %1"_s;
}

QStringList Sandbox::tempFiles() const
{
    return QDir(tempFolder())
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString Sandbox::write(const QString &name, const QByteArray &content) const
{
    const QString file = path(name);
    QDir().mkpath(QFileInfo(file).path());
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly) || output.write(content) != content.size())
        qFatal("Cannot write %s", qUtf8Printable(file));
    return file;
}

QByteArray Sandbox::read(const QString &name) const
{
    QFile input(path(name));
    return input.open(QIODevice::ReadOnly) ? input.readAll() : QByteArray();
}

void Sandbox::setScenario(const QByteArray &lines)
{
    write(u"scenario.txt"_s, lines);
}

QList<QStringList> Sandbox::engineRuns() const
{
    QList<QStringList> runs;
    for (const QByteArray &line : read(u"engine-runs.txt"_s).split('\n')) {
        if (!line.isEmpty())
            runs.append(
                QVariant(QJsonDocument::fromJson(line).array().toVariantList()).toStringList());
    }
    return runs;
}

void Sandbox::setRegistry(const QJsonObject &registry) const
{
    m_registry.set(registry);
}

QJsonObject Sandbox::registry() const
{
    return QJsonDocument::fromJson(read(u"registry.json"_s)).object();
}

void Sandbox::recordInstallation(const QString &version, const QString &location,
                                 const QString &uninstallString) const
{
    QJsonObject entry { { u"DisplayVersion"_s, version }, { u"InstallLocation"_s, location } };
    if (!uninstallString.isEmpty())
        entry[u"UninstallString"_s] = uninstallString;
    setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
                        + Product::kUninstallKey,
                    entry } });
}
