#pragma once

class QJsonArray;

/// Gives the desktop other screens, written as in screens.json; one that keeps its name is the same
/// screen. False where Qt does not say how to.
[[nodiscard]] bool setScreens(const QJsonArray &screens);
