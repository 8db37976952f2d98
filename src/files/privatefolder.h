#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// A new folder in the temp folder that only the user of this process may enter; if the process is
/// elevated, only administrators and the system, as other programs of the same user then have fewer
/// rights than this one. While the object lives, the folder cannot be replaced, nor a folder on the
/// way to it. The destructor removes it with its files; make no folders in it.
class PrivateFolder
{
public:
    PrivateFolder();
    ~PrivateFolder();
    Q_DISABLE_COPY_MOVE(PrivateFolder)

    /// Once. False if the folder cannot be made; errorString() then has the system's words.
    bool create();
    /// Removes the folder with its files, before the object goes.
    void remove();
    /// Leaves the folder where it is when the object goes, for a program in it that goes on.
    /// Windows removes it when it starts the next time, if this process may ask it to.
    void leaveUntilRestart();

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString filePath(const QString &name) const { return m_path + u'/' + name; }
    [[nodiscard]] QString errorString() const { return m_error; }

    /// Removes folders that killed processes have left: those of the same owner as this one that
    /// are not in use. Call create() first.
    void removeAbandoned() const;

private:
    /// What only one system can tell.
    class Native;

    std::unique_ptr<Native> m_native;
    QString m_path;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock; ///< held as long as the folder is in use
};
