#include "pages/fittedlabel.h"

#include "pages/pagelabels.h"

#include <QAbstractTextDocumentLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolTip>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Upper limit of the minimum width, in px.
constexpr int kWidthAtLeast = 200;

/// Longer texts do not fit anywhere, and measuring them is slow.
constexpr qsizetype kMostMeasured = 2000;

void prepare(QTextDocument &document, const QFont &font, QTextOption::WrapMode wrapMode)
{
    document.setDocumentMargin(0.0);
    document.setDefaultFont(font);
    QTextOption option;
    option.setWrapMode(wrapMode);
    document.setDefaultTextOption(option);
}

int heightOf(const QTextDocument &document)
{
    return int(std::ceil(document.size().height()));
}

} // namespace

FittedLabel::FittedLabel(Shorten shorten, QWidget *parent) : QLabel(parent), m_shorten(shorten)
{
    setTextFormat(Qt::PlainText);
}

void FittedLabel::setRichText(const QString &markup, const QString &text)
{
    m_markup = markup;
    m_outsideText = text;
    setTextFormat(Qt::RichText);
    setText(markup.arg(literalHtml(text)));
}

void FittedLabel::setWrapAnywhere(bool on)
{
    m_wrapsAnywhere = on;
    setWordWrap(on);
}

QSize FittedLabel::minimumSizeHint() const
{
    const QSize hint = QLabel::minimumSizeHint();
    return { qMin(hint.width(), kWidthAtLeast), hint.height() };
}

int FittedLabel::heightForWidth(int width) const
{
    if (!wordWrap() || isOrdinary(width))
        return QLabel::heightForWidth(width);
    const QSize frame = size() - textRect().size();
    QTextDocument document;
    layOut(document, outsideText().left(kMostMeasured), width - frame.width());
    return heightOf(document) + frame.height();
}

QString FittedLabel::outsideText() const
{
    return m_markup.isEmpty() ? text() : m_outsideText;
}

// Where QLabel puts its text: half a letter from its frame, if it has one.
QRect FittedLabel::textRect() const
{
    const int indent = frameWidth() > 0 ? fontMetrics().horizontalAdvance(u'x') / 2 : 0;
    const int above = alignment() & Qt::AlignTop ? indent : 0;
    return contentsRect().adjusted(indent, above, 0, 0);
}

void FittedLabel::layOut(QTextDocument &document, const QString &text, int width) const
{
    prepare(document, font(),
            m_wrapsAnywhere  ? QTextOption::WrapAnywhere
                : wordWrap() ? QTextOption::WrapAtWordBoundaryOrAnywhere
                             : QTextOption::NoWrap);
    if (m_markup.isEmpty()) {
        document.setPlainText(withPathBreaks(text));
    } else {
        // In markup a path breaks at its separators alone.
        const QString path = withPathBreaks(text).replace(u' ', QChar::Nbsp);
        document.setHtml(m_markup.arg(path.toHtmlEscaped()));
    }
    document.setTextWidth(width);
}

/// Whether no line of that width has to be broken, or none but at blanks.
bool FittedLabel::isOrdinary(int width) const
{
    if (outsideText().size() > kMostMeasured)
        return false;
    if (wordWrap() && m_markup.isEmpty() && withPathBreaks(text()) == text())
        return QLabel::minimumSizeHint().width() <= width;
    QTextDocument document;
    prepare(document, font(), QTextOption::NoWrap);
    if (m_markup.isEmpty())
        document.setPlainText(text());
    else
        document.setHtml(text());
    const int frame = this->width() - textRect().width();
    return document.idealWidth() <= width - frame;
}

/// Whether the painting of QLabel shows the whole text.
bool FittedLabel::isShownByQLabel() const
{
    return isOrdinary(width())
        && (!wordWrap() || !m_markup.isEmpty() || QLabel::heightForWidth(width()) <= height());
}

/// What of the outside text is shown.
QString FittedLabel::shownText() const
{
    const QSize room = textRect().size();
    return m_shorten(outsideText(), [&](const QString &text) {
        QTextDocument document;
        layOut(document, text, room.width());
        return document.idealWidth() <= room.width()
            && (!wordWrap() || heightOf(document) <= room.height());
    });
}

bool FittedLabel::isSelectable() const
{
    return textInteractionFlags() & Qt::TextSelectableByMouse;
}

void FittedLabel::selectWhole()
{
    const QString all = text();
    setSelection(0, int(all.size()));
    update();
}

bool FittedLabel::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ToolTip: {
        // Made when it is asked for: a tool tip that is always there would be read out, markup and
        // all, as the label's description.
        const QString whole = outsideText();
        if (isShownByQLabel() || shownText() == whole)
            break;
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), textToolTip(whole), this);
        return true;
    }
    // Any click selects the whole text, also the part that does not fit, so that all of it is
    // copied.
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (!isSelectable())
            break;
        selectWhole();
        return true;
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        if (isSelectable())
            return true;
        break;
    default:
        break;
    }
    return QLabel::event(event);
}

void FittedLabel::contextMenuEvent(QContextMenuEvent *event)
{
    if (isSelectable())
        selectWhole(); // or "Copy" in the menu would have nothing to copy
    QLabel::contextMenuEvent(event);
}

void FittedLabel::paintEvent(QPaintEvent *event)
{
    if (isShownByQLabel())
        return QLabel::paintEvent(event);
    const QRect room = textRect();
    QTextDocument document;
    layOut(document, shownText(), room.width());
    // Exactly where QLabel has a text that need not be shortened: a document rounds the heights of
    // its lines, a plain line does not, and rich text begins on a whole pixel.
    const bool isLine = !wordWrap() && m_markup.isEmpty();
    const double height = isLine ? QFontMetricsF(font()).height() : document.size().height();
    double above = alignment() & Qt::AlignVCenter ? (room.height() - height) / 2.0 : 0.0;
    if (!m_markup.isEmpty())
        above = std::floor(above);

    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    if (hasSelectedText()) {
        QAbstractTextDocumentLayout::Selection selection { QTextCursor(&document), {} };
        selection.cursor.select(QTextCursor::Document);
        selection.format.setBackground(palette().highlight());
        selection.format.setForeground(palette().highlightedText());
        context.selections.append(selection);
    }
    QPainter painter(this);
    drawFrame(&painter);
    painter.translate(QPointF(room.topLeft()) + QPointF(0.0, above));
    document.documentLayout()->draw(&painter, context);
}
