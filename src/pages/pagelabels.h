#pragma once

#include <QLabel>
#include <QVBoxLayout>

/// What every page is built of. The labels show their text literally, whatever is in it, and take
/// their colour from the theme, now and on every change.

/// The layout of a page: margins 22, 18, 22, 18, no spacing of its own.
QVBoxLayout *pageLayout(QWidget *page);

/// Adds the two labels that a page begins with, 5 px apart; returns the body.
QLabel *addPageHead(QVBoxLayout *layout, const QString &title, const QString &body);

/// The whole of a page that ends a run: `emblem`, the head below it, and air. Returns the body.
QLabel *layOutFinishPage(QWidget *page, QWidget *emblem, const QString &title);

/// Headline of a page.
QLabel *pageTitleLabel(const QString &text, QWidget *page);
/// Running text; a line break in it stays one.
QLabel *pageBodyLabel(const QString &text, QWidget *page);
/// Small print, in one line.
QLabel *pageCaptionLabel(const QString &text, QWidget *page);
/// A remark with a bar at its left, in the looks of `styleSheet` (tokens are resolved). One to a
/// page.
QLabel *pageCallout(const QString &text, const QString &styleSheet, QWidget *page);

/// Outside text as it is to stand in rich text: literally, runs of blanks included.
[[nodiscard]] QString literalHtml(const QString &text);

/// A tool tip that shows `text` literally. It breaks its lines at the separators of paths too, as
/// what it does not break runs off the screen.
[[nodiscard]] QString textToolTip(const QString &text);
