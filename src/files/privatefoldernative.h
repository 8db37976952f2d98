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
    /// Has the folder `path` and its files removed at the next start of the system, where there is
    /// such a thing.
    static void removeAtRestart(const QString &path);

private:
    explicit Native(void *handle) : m_handle(handle) {}

    void *const m_handle; ///< Windows': keeps the folder where it is
};
