#include "pages/checkrow.h"

#include "pages/fittedtext.h"
#include "pages/pagelabels.h"
#include "theme/fonts.h"
#include "theme/themed.h"
#include "widgets/hairline.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSlide = 5; // px
constexpr int kRowHeight = 26;
constexpr double kBadgeSize = 16.0;
constexpr int kLabelLeft = int(kBadgeSize) + 11;
constexpr double kLabelColumn = 0.55; // of the row's width
constexpr int kLabelValueGap = 10;
constexpr int kValueSize = 11;

constexpr int kLabelAlignment = Qt::AlignLeft | Qt::AlignVCenter;

constexpr QPointF kCheckMark[] = { { 0.27, 0.52 }, { 0.43, 0.68 }, { 0.75, 0.32 } };
constexpr double kCheckWidth = 1.7;

QString readAloud(const CheckResult &result)
{
    return result.label + ": "_L1 + result.value;
}

} // namespace

SystemCheckPage::CheckRow::CheckRow(const CheckResult &result, QWidget *parent)
    : RevealRow(kSlide, readAloud(result), parent), m_result(result)
{
    setFixedHeight(kRowHeight);
}

void SystemCheckPage::CheckRow::setResult(const CheckResult &result)
{
    m_result = result;
    setAccessibleName(readAloud(result));
    update();
}

QSize SystemCheckPage::CheckRow::sizeHint() const
{
    return { 0, kRowHeight };
}

bool SystemCheckPage::CheckRow::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && isRevealed() && shownValue() != m_result.value) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                           textToolTip(m_result.value), this);
        return true;
    }
    return RevealRow::event(event);
}

QFont SystemCheckPage::CheckRow::labelFont() const
{
    QFont labelFont = font();
    labelFont.setPixelSize(12);
    return labelFont;
}

QRect SystemCheckPage::CheckRow::labelRect() const
{
    return { kLabelLeft, 0, int(width() * kLabelColumn), height() };
}

QRect SystemCheckPage::CheckRow::valueRect() const
{
    const QRect label =
        QFontMetrics(labelFont()).boundingRect(labelRect(), kLabelAlignment, m_result.label);
    const int left = label.right() + kLabelValueGap;
    return { left, 0, width() - left, height() };
}

QString SystemCheckPage::CheckRow::shownValue() const
{
    const QFontMetrics metrics(monospacedFont(kValueSize));
    const int room = valueRect().width();
    // A figure and a verdict come last, so they stay when a name loses its middle.
    return shortenFinding(m_result.value, [&metrics, room](const QString &text) {
        return metrics.horizontalAdvance(text) <= room;
    });
}

void SystemCheckPage::CheckRow::paintBadge(QPainter &painter, const QRectF &badge) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(themedColor(m_result.ok ? u"@INS_OK"_s : u"@INS_WARN"_s));
    painter.drawEllipse(badge);

    painter.setBrush(Qt::NoBrush);
    if (m_result.ok) {
        QPolygonF mark;
        for (const QPointF &point : kCheckMark)
            mark << badge.topLeft() + point * kBadgeSize;
        painter.setPen(QPen(Qt::white, kCheckWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(mark);
    } else {
        QFont font = painter.font();
        font.setPixelSize(10);
        font.setWeight(QFont::Bold);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(badge, Qt::AlignCenter, u"!"_s);
    }
}

void SystemCheckPage::CheckRow::paintRow(QPainter &painter)
{
    paintBadge(painter, QRectF(0.0, (height() - kBadgeSize) * 0.5, kBadgeSize, kBadgeSize));

    painter.setFont(labelFont());
    painter.setPen(themedColor(u"@INS_TX"_s));
    painter.drawText(labelRect(), kLabelAlignment, m_result.label);

    painter.setFont(monospacedFont(kValueSize));
    painter.setPen(themedColor(m_result.ok ? u"@INS_TX2"_s : u"@INS_WARN"_s));
    painter.drawText(valueRect(), Qt::AlignRight | Qt::AlignVCenter, shownValue());

    paintHairline(painter, rect(), Qt::BottomEdge, themedColor(u"@INS_LINE"_s));
}
