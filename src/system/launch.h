#pragma once

#include <QString>

/// Starts the installed application from `folder`, with that folder as its working directory, and
/// brings it to the front. Does nothing if it is not there. May take up to five seconds, until the
/// application has its first window.
void launchApplication(const QString &folder);
