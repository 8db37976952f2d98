#pragma once

#include "theme/thememanager.h"

#include <QColor>
#include <QWidget>

/// `text` with the current theme's colours in place of its tokens.
[[nodiscard]] QString themed(const QString &text);

/// The current theme's colour of `token`, for painting.
[[nodiscard]] QColor themedColor(const QString &token);

/// Runs `restyle` now and on every theme change for as long as `context` lives.
template <typename Restyle>
void onThemeChange(QObject *context, Restyle restyle)
{
    restyle();
    QObject::connect(&ThemeManager::instance(), &ThemeManager::themeChanged, context, restyle);
}

/// Gives `widget` the style sheet `text`, its tokens resolved, now and on every theme change.
void setThemedStyleSheet(QWidget *widget, const QString &text);

/// Repaints `widget` on every theme change.
void repaintOnThemeChange(QWidget *widget);
