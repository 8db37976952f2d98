#pragma once

#include "files/privatefolder.h"

/// The folder of a PrivateFolder, made by the system in one step with the rights it is to have.
class PrivateFolder::Native
{
public:
    /// Makes the folder `path`, which must not exist. Null, with the system's words in `error`, if
    /// that fails.
    static std::unique_ptr<Native> make(const QString &path, QString *error);
    ~Native(); // NOLINT(performance-trivially-destructible): on Windows it closes the handle
    Q_DISABLE_COPY_MOVE(Native)

    /// The folder `path`, if it is one, no link to one, and has the owner of this one; null if not.
    /// Until that goes nobody can put another folder in its place.
    [[nodiscard]] std::unique_ptr<Native> withSameOwner(const QString &path) const;
    /// The folder's path without links: nobody can lead this one elsewhere while the object lives.
    /// Where the system cannot tell, the path that it was made or opened with.
    [[nodiscard]] const QString &path() const { return m_path; }
    /// Has the folder `path` and its files removed at the next start of the system, where there is
    /// such a thing.
    static void removeAtRestart(const QString &path);

private:
    Native(void *handle, const QString &path);

    const QString m_path;
    void *const m_handle; ///< Windows': keeps the folder where it is
};
