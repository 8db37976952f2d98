#include "files/privatefolder.h"

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

/// Only files: what is in a folder inside was not put there by us.
bool removeFolder(const QString &path)
{
    QDir folder(path);
    const QStringList names =
        folder.entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names)
        folder.remove(name);
    return QDir().rmdir(path);
}

std::unique_ptr<QLockFile> lockIn(const QString &folder)
{
    auto lock = std::make_unique<QLockFile>(folder + u'/' + kLockName);
    lock->setStaleLockTime(0); // however old, it counts while its process lives
    return lock;
}

} // namespace

PrivateFolder::~PrivateFolder()
{
    if (!m_lock)
        return;
    m_lock.reset();
    QDeadlineTimer deadline(kRemovalTimeout);
    while (!removeFolder(m_path) && QDir(m_path).exists() && !deadline.hasExpired())
        QThread::msleep(kLookInterval.count());
}

bool PrivateFolder::create()
{
    m_path = QDir::temp().absoluteFilePath(kPrefix + QUuid::createUuid().toString(QUuid::Id128));
    if (!PrivateFolderSystem::make(m_path, &m_error))
        return false;
    m_lock = lockIn(m_path);
    // Who may write to the temp folder could have put another folder in the place of this one
    // before the lock was in it; with an open file inside it stays where it is.
    if (m_lock->tryLock(0) && PrivateFolderSystem::isOurs(m_path))
        return true;
    m_lock.reset();
    m_error = qt_error_string(EACCES);
    return false;
}

void PrivateFolder::leaveUntilRestart()
{
    m_lock.reset();
    PrivateFolderSystem::removeAtRestart(m_path);
}

void PrivateFolder::removeAbandoned()
{
    const QDir temp = QDir::temp();
    const QStringList names = temp.entryList({ kPrefix + u'*' }, QDir::Dirs | QDir::Hidden);
    for (const QString &name : names) {
        const QString path = temp.absoluteFilePath(name);
        if (!PrivateFolderSystem::isOurs(path))
            continue;
        std::unique_ptr<QLockFile> lock = lockIn(path);
        if (!lock->tryLock(0))
            continue;
        lock.reset();
        removeFolder(path);
    }
}
