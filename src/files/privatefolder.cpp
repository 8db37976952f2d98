#include "files/privatefolder.h"

#include "files/privatefoldernative.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>
#include <QUuid>

#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPrefix = "varnel_private_"_L1;
constexpr auto kLockName = "lock"_L1;

/// A program that has just ended, or a virus scanner, may have a file open for a moment.
constexpr auto kRemovalTimeout = 2000ms;
constexpr auto kLookInterval = 20ms;

/// Whether no file is left. Folders inside were not put there by us.
bool removeFiles(const QString &path)
{
    QDir folder(path);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    bool isEmpty = true;
    for (const QString &name : names)
        isEmpty = folder.remove(name) && isEmpty;
    return isEmpty;
}

std::unique_ptr<QLockFile> lockIn(const QString &folder)
{
    auto lock = std::make_unique<QLockFile>(folder + u'/' + kLockName);
    lock->setStaleLockTime(0); // however old, it counts while its process lives
    return lock;
}

} // namespace

PrivateFolder::PrivateFolder() = default;

PrivateFolder::~PrivateFolder()
{
    remove();
}

void PrivateFolder::remove()
{
    if (!m_lock)
        return;
    m_lock.reset();
    QDeadlineTimer deadline(kRemovalTimeout);
    while (!removeFiles(m_path) && !deadline.hasExpired())
        QThread::msleep(kLookInterval.count());
    m_native.reset(); // not before: it keeps the folder from being replaced
    QDir().rmdir(m_path);
}

bool PrivateFolder::create()
{
    const QString name = kPrefix + QUuid::createUuid().toString(QUuid::Id128);
    m_native = Native::make(QDir::temp().absoluteFilePath(name), &m_error);
    if (!m_native)
        return false;
    m_path = m_native->path();
    m_lock = lockIn(m_path);
    // Another process may hold it for a moment, to see whether the folder is in use.
    if (m_lock->tryLock(int(kRemovalTimeout.count())))
        return true;
    m_error = m_lock->error() == QLockFile::PermissionError
        ? QCoreApplication::translate("PrivateFolder", "Access is denied")
        : QCoreApplication::translate("PrivateFolder", "There is no room on the disk");
    return false;
}

void PrivateFolder::leaveUntilRestart()
{
    m_lock.reset();
    Native::removeAtRestart(m_path);
}

void PrivateFolder::removeAbandoned() const
{
    const QDir temp = QDir::temp();
    const QStringList names = temp.entryList({ kPrefix + u'*' }, QDir::Dirs | QDir::Hidden);
    for (const QString &name : names) {
        std::unique_ptr<Native> folder = m_native->withSameOwner(temp.absoluteFilePath(name));
        if (!folder)
            continue;
        const QString path = folder->path();
        std::unique_ptr<QLockFile> lock = lockIn(path);
        if (!lock->tryLock(0))
            continue;
        lock.reset();
        removeFiles(path);
        folder.reset();
        QDir().rmdir(path);
    }
}
