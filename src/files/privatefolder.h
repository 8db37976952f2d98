#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// A new folder in the temp folder that only the user of this process may enter; if the process is
/// elevated, only administrators and the system, as other programs of the same user then have fewer
/// rights than this one. It has no folders inside, and goes with the object, with all its files.
class PrivateFolder
{
public:
    PrivateFolder() = default;
    ~PrivateFolder();
    Q_DISABLE_COPY_MOVE(PrivateFolder)

    /// Once. False if the folder cannot be made; errorString() then has the system's words.
    bool create();
    /// Leaves the folder where it is when the object goes, for a program in it that goes on.
    /// Windows removes it when it starts the next time, if this process may ask it to.
    void leaveUntilRestart();

    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString filePath(const QString &name) const { return m_path + u'/' + name; }
    [[nodiscard]] QString errorString() const { return m_error; }

    /// Removes those folders that were left by processes which have been killed: only those that
    /// this class has made with the rights of this process, and that nobody uses.
    static void removeAbandoned();

private:
    QString m_path;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock; ///< held as long as the folder is in use
};

/// What only one system can tell.
namespace PrivateFolderSystem {

/// Makes the folder `path`, which must not exist. False with the system's words in `error`.
bool make(const QString &path, QString *error);
/// Whether `path` is a folder, no link to one, that make() can have made in a process with the
/// rights of this one. Another process could not have made it so.
bool isOurs(const QString &path);
/// Has the folder `path` and its files removed at the next start of the system, where there is such
/// a thing.
void removeAtRestart(const QString &path);

} // namespace PrivateFolderSystem
