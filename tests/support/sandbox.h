#pragma once

#include "support/registrystore.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>

/// Gives one test a temp folder, home, desktop, preferences and registry of its own, and the
/// stand-in setup engine with a scenario. It changes the process's environment, and the destructor
/// removes everything again.
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
    /// The same with native separators.
    [[nodiscard]] QString nativePath(const QString &name) const;
    /// A valid name for a folder, with characters that mean something in markup or in a format.
    [[nodiscard]] static QString oddName();
    /// Folder that the process takes for the system's temp folder.
    [[nodiscard]] QString tempFolder() const { return path(QStringLiteral("temp")); }
    /// Names of the files in the temp folder, sorted.
    [[nodiscard]] QStringList tempFiles() const;

    /// Writes a file below the sandbox and returns its path; makes the folders on the way.
    QString write(const QString &name, const QByteArray &content) const;
    [[nodiscard]] QByteArray read(const QString &name) const;

    /// How the stand-in engine behaves from now on: lines of "key = value". It waits nowhere unless
    /// they say so.
    void setScenario(const QByteArray &lines);
    /// The argument lists of the engine's runs so far, each with the program first.
    [[nodiscard]] QList<QStringList> engineRuns() const;

    /// Replaces the registry: full key path -> object of value names.
    void setRegistry(const QJsonObject &registry) const;
    /// See RegistryStore::content().
    [[nodiscard]] QStringList storedRegistry() const { return m_registry.content(); }
    /// What the stand-in engine has written; it uses a file also where there is a real registry.
    [[nodiscard]] QJsonObject registry() const;
    /// Copies that into the registry that this process reads, where that is not the same file.
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
