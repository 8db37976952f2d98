#pragma once

#include "support/grab.h"
#include "theme/themed.h"

#include <QPixmap>
#include <QScreen>
#include <QTest>

/// Shows `widget` alone and tells whether it repaints by itself on each change of the theme:
/// whether the screen then has the colour of `token` at `place`. That lies beside the widget's
/// children, which repaint themselves and what is behind them.
[[nodiscard]] inline bool repaintsOnThemeChange(QWidget &widget, const QPointF &place,
                                                const QString &token)
{
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget))
        return false;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const bool isRepainted = QTest::qWaitFor([&] {
            const QImage picture = widget.screen()->grabWindow(widget.winId()).toImage();
            return colourAt(picture, place) == themedColor(token);
        });
        if (!isRepainted)
            return false;
    }
    return true;
}
