#pragma once

#include <QString>
#include <QStringList>

/// Starts the installed application from `folder`, with that folder as its working directory, and
/// brings it to the front. Does nothing if it is not there. May take up to five seconds, until the
/// application has its first window.
void launchApplication(const QString &folder);

/// Starts `program` in its own folder and waits until it waits for its user, at most half a minute.
/// False if it could not be started or has not come so far. Elsewhere than on Windows
/// nothing is waited for.
[[nodiscard]] bool startAndAwaitWindow(const QString &program, const QStringList &arguments);
