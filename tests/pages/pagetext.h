#pragma once

#include <QSize>
#include <QStringList>

class QLabel;
class QWidget;

/// The room that the window has for a page.
inline constexpr QSize kPageSize(484, 390);

/// Text from outside that must not be taken for markup, a shortcut or a place marker.
inline const QString kLiteral = QStringLiteral("a&b <i>%2 %1</i>");

/// A word of 200 characters.
[[nodiscard]] QString longWord();

/// The label of `page` that shows exactly `text`; null if there is none.
[[nodiscard]] QLabel *labelOf(const QWidget *page, const QString &text);

/// The text of a label without its markup.
[[nodiscard]] QString shownText(const QLabel *label);

/// The text of the tool tip that comes when the pointer rests on `widget`; empty if none does.
[[nodiscard]] QString toolTipOf(QWidget &widget);

/// The lines of text that `widget` draws.
[[nodiscard]] QStringList shownLines(QWidget &widget);

/// True if `page`, in the room that the window has for it, keeps every widget inside its margins.
[[nodiscard]] bool fitsWindow(QWidget *page);
