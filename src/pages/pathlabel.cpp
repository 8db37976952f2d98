#include "pages/pathlabel.h"

#include "pages/pagelabels.h"

#include <QPainter>
#include <QStyle>

using namespace Qt::Literals::StringLiterals;

namespace {

/// In several lines if need be: a tool tip breaks lines at blanks only, and what it does not break
/// runs off the screen.
QString pathToolTip(const QString &path)
{
    QString text = literalHtml(path);
    for (const QChar separator : { u'/', u'\\' })
        text.replace(separator, QString(separator) + u'\u200b');
    return u"<p>%1</p>"_s.arg(text);
}

} // namespace

PathLabel::PathLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(monospacedFont(11));
    // However long the path is, what stands beside it stays where it is.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PathLabel::setPath(const QString &path)
{
    setText(path);
    setToolTip(pathToolTip(path));
}

void PathLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    // Half a letter from its frame, like any label's text.
    const int indent = frameWidth() > 0 ? fontMetrics().horizontalAdvance(u'x') / 2 : 0;
    const QRect line = contentsRect().adjusted(indent, 0, 0, 0);
    style()->drawItemText(&painter, line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideMiddle, line.width()),
                          foregroundRole());
}
