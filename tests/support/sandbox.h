#pragma once

#include "support/registrystore.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>

/// A small world of its own for one test: temp folder, home, desktop, preferences, registry, and
/// the stand-in setup engine with a scenario. The process's environment points there for as long as
/// it lives; afterwards nothing of it is left.
class Sandbox
{
public:
    Sandbox();
    ~Sandbox();
    Q_DISABLE_COPY_MOVE(Sandbox)

    /// The stand-in setup engine's executable.
    [[nodiscard]] static QString setupEngine();

    /// Absolute path of `name` in the sandbox.
    [[nodiscard]] QString path(const QString &name) const;
    /// The same in the way that this system writes paths.
    [[nodiscard]] QString nativePath(const QString &name) const;
    /// A name that a folder may have here, with signs that careless code takes for something else.
    [[nodiscard]] static QString oddName();
    /// Folder that the process takes for the system's temp folder.
    [[nodiscard]] QString tempFolder() const { return path(QStringLiteral("temp")); }
    /// Names of the files in the temp folder, sorted.
    [[nodiscard]] QStringList tempFiles() const;

    /// Writes a file below the sandbox and returns its path; makes the folders on the way.
    QString write(const QString &name, const QByteArray &content) const;
    [[nodiscard]] QByteArray read(const QString &name) const;

    /// How the stand-in engine behaves from now on: lines of "key = value". Without delay
    /// otherwise.
    void setScenario(const QByteArray &lines);
    /// The argument lists of the engine's runs so far, each with the program first.
    [[nodiscard]] QList<QStringList> engineRuns() const;

    /// The registry of this world: full key path -> object of value names.
    void setRegistry(const QJsonObject &registry) const;
    /// See RegistryStore::content().
    [[nodiscard]] QStringList storedRegistry() const { return m_registry.content(); }
    /// What the stand-in engine has recorded; it never touches a real registry.
    [[nodiscard]] QJsonObject registry() const;
    /// Makes that what this process reads. Where there is no real registry, it is already.
    void adoptRegistry() const { setRegistry(registry()); }
    /// Records an installed copy the way the setup engine does, machine-wide.
    void recordInstallation(const QString &version, const QString &location,
                            const QString &uninstallString = {}) const;

private:
    void changeVariable(const char *name, const QString &value);

    QTemporaryDir m_folder;
    RegistryStore m_registry;
    struct Variable
    {
        const char *name;
        QString value;
        bool wasSet;
    };
    QList<Variable> m_saved;
};
