#pragma once

class QString;
class QWidget;

/// Tells Windows' screen readers a text that no control shows: Qt 6.4 has no event that would. Only
/// if one of them has asked for the window; nothing happens elsewhere.
void notifyScreenReader(const QWidget &window, const QString &text);
