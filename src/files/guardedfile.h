#pragma once

#include <QString>

#include <memory>

/// Keeps a file as it is: until it is released nobody can write, rename or delete it, not even an
/// administrator. It can be read and started. Only Windows has such locks; elsewhere this only
/// checks that the file can be read.
class GuardedFile
{
public:
    GuardedFile();
    ~GuardedFile();
    Q_DISABLE_COPY_MOVE(GuardedFile)

    /// Lets go of the previous file. False if `path` cannot be opened for reading, or if somebody
    /// has it open for writing; errorString() then has the system's words.
    bool hold(const QString &path);
    void release();

    [[nodiscard]] bool isHeld() const { return bool(m_handle); }
    /// As it was given to hold(), also if that failed.
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString errorString() const { return m_error; }

private:
    struct Handle;

    std::unique_ptr<Handle> m_handle;
    QString m_path;
    QString m_error;
};
