#include "wizard/steprow.h"

#include "theme/fonts.h"
#include "theme/themed.h"

#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSlide = 4; // px
constexpr int kHeight = 22;
const QString kCheckMark = u"\u2713 "_s;

} // namespace

StepList::StepRow::StepRow(const QString &text, QWidget *parent)
    : RevealRow(kSlide, text, parent), m_text(text)
{
    setFont(monospacedFont(11));
    setFixedHeight(kHeight);
}

QSize StepList::StepRow::sizeHint() const
{
    return { fontMetrics().horizontalAdvance(kCheckMark + m_text), kHeight };
}

void StepList::StepRow::paintRow(QPainter &painter)
{
    painter.setFont(font());
    painter.setPen(themedColor(u"@INS_OK"_s));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, kCheckMark);
    painter.setPen(themedColor(u"@INS_TX2"_s));
    const int textLeft = painter.fontMetrics().horizontalAdvance(kCheckMark);
    painter.drawText(rect().adjusted(textLeft, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, m_text);
}
