#include "engine/enginearguments.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

QString installArguments(const QString &folder, const QStringList &tasks, const QString &statusFile,
                         const QString &logFile)
{
    // One arg() for all four places: a folder may be called "a %2 b".
    return uR"(/VERYSILENT /SUPPRESSMSGBOXES /NORESTART /DIR="%1" /TASKS="%2" /STATUSFILE="%3" /LOG="%4")"_s
        .arg(QDir::toNativeSeparators(folder), tasks.join(u','),
             QDir::toNativeSeparators(statusFile), QDir::toNativeSeparators(logFile));
}

QString uninstallArguments(const QString &statusFile)
{
    return uR"(/VERYSILENT /SUPPRESSMSGBOXES /NORESTART /STATUSFILE="%1")"_s.arg(
        QDir::toNativeSeparators(statusFile));
}
