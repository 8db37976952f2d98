#include "pages/summarybox.h"

#include "pages/pagelabels.h"
#include "theme/themed.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kHeight = 120;
/// What heightForWidth() counts beyond the lines and the padding, in px; it may be cut.
constexpr int kAir = 7;

} // namespace

SummaryBox::SummaryBox(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::RichText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setWordWrap(true);
    setFont(monospacedFont(11));
    setFixedHeight(kHeight);
    // Or the markup of the tool tip would be read out.
    setAccessibleDescription(tr("Summary"));
    // A line that is not wrapped must not make the page wider.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setThemedStyleSheet(this,
                        u"background:@INS_PANEL;border:1px solid @INS_LINE;border-radius:8px;"
                        "padding:12px 13px;color:@INS_TX2;"_s);
}

void SummaryBox::setSummary(const QString &text)
{
    setText(text);
    if (isVisible())
        fit();
}

void SummaryBox::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    fit();
}

void SummaryBox::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (isVisible())
        fit();
}

void SummaryBox::fit()
{
    setWordWrap(true);
    // A word that is wider than the box adds no line, it is cut.
    const bool fits =
        heightForWidth(width()) <= height() + kAir && minimumSizeHint().width() <= width();
    setWordWrap(fits);
    setToolTip(fits ? QString() : text());
}
