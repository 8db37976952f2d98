#include "pages/pagetext.h"

#include "support/drawing.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QLayout>
#include <QTextDocument>
#include <QToolTip>

namespace {

/// Without the invisible characters at which lines break.
QString visible(QString text)
{
    return text.remove(u'\u200b').remove(u'\ufeff').replace(u'\u00a0', u' ');
}

/// At once, which QToolTip::hideText() does not.
void hideToolTip()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->windowType() == Qt::ToolTip)
            window->hide();
    }
}

} // namespace

QString longWord()
{
    return QString(200, u'm');
}

QLabel *labelOf(const QWidget *page, const QString &text)
{
    for (QLabel *label : page->findChildren<QLabel *>()) {
        if (shownText(label) == text)
            return label;
    }
    return nullptr;
}

QString shownText(const QLabel *label)
{
    if (label->textFormat() != Qt::RichText)
        return label->text();
    QTextDocument document;
    document.setHtml(label->text());
    return document.toPlainText();
}

QString toolTipOf(QWidget &widget)
{
    hideToolTip();
    const QPoint place = widget.rect().center();
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
    if (!QToolTip::isVisible())
        return {};
    QTextDocument tip;
    tip.setHtml(QToolTip::text());
    hideToolTip();
    return visible(tip.toPlainText());
}

QStringList shownLines(QWidget &widget)
{
    QStringList lines;
    double baseline = -1.0;
    for (const DrawnText &run : draw(widget, 1.0).texts) {
        if (lines.isEmpty() || run.baseline.y() != baseline)
            lines.append(QString());
        baseline = run.baseline.y();
        lines.last() += visible(run.text);
    }
    return lines;
}

bool fitsWindow(QWidget *page)
{
    QWidget window;
    window.resize(kPageSize);
    page->setParent(&window);
    page->setGeometry(window.rect());
    window.show();
    page->layout()->activate();
    const QRect room = page->rect().marginsRemoved(page->layout()->contentsMargins());
    bool fits = page->size() == kPageSize;
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        const QRect place(widget->mapTo(page, QPoint()), widget->size());
        if (widget->isVisible() && !room.contains(place)) {
            qInfo() << widget << "leaves the page:" << place;
            fits = false;
        }
    }
    page->setParent(nullptr);
    return fits;
}
