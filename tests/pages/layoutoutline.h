#pragma once

#include <QLayout>
#include <QStringList>

/// The items of a page's layout from top to bottom, one line each, so that a whole page can be
/// compared with a list:
///
///     margins 22 18 22 18, spacing 0
///     label: Ready to Install
///     gap 5
///     row, spacing 8
///       label: /opt, stretch 1
///       button: Change
///     stretch
///
/// Push buttons, labels and other controls with a text show it; every other widget is its class
/// name.
[[nodiscard]] QStringList layoutOutline(const QWidget *page);

/// The widgets in `layout` and in the layouts within it, in reading order.
[[nodiscard]] QList<QWidget *> layoutWidgets(const QLayout *layout);
