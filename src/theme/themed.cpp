#include "theme/themed.h"

QString themed(const QString &text)
{
    return ThemeManager::instance().resolve(text);
}

QColor themedColor(const QString &token)
{
    return QColor(ThemeManager::instance().color(token));
}

void setThemedStyleSheet(QWidget *widget, const QString &text)
{
    onThemeChange(widget, [widget, text] { widget->setStyleSheet(themed(text)); });
}

void repaintOnThemeChange(QWidget *widget)
{
    QObject::connect(&ThemeManager::instance(), &ThemeManager::themeChanged, widget,
                     qOverload<>(&QWidget::update));
}
