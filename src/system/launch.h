#pragma once

#include <QString>
#include <QStringList>

/// Starts the installed application from `folder`, with that folder as its working directory, and
/// brings it to the front. Does nothing if it is not there. May take up to five seconds, until the
/// application has its first window.
void launchApplication(const QString &folder);

/// Starts `program` in its own folder and waits until a window of it is on screen, at most half a
/// minute. False if it does not start, or has none by then, and does not run any more. Elsewhere
/// than on Windows nothing is waited for.
[[nodiscard]] bool startAndAwaitWindow(const QString &program, const QStringList &arguments);
