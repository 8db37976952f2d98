#include "pages/summarybox.h"

#include "pages/pagelabels.h"
#include "theme/themed.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kHeight = 120;

} // namespace

SummaryBox::SummaryBox(QWidget *parent) : FittedLabel(shortenMiddle, parent)
{
    setTextFormat(Qt::RichText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setWordWrap(true);
    setFont(monospacedFont(11));
    setFixedHeight(kHeight);
    setAccessibleDescription(tr("Summary"));
    setThemedStyleSheet(this,
                        u"background:@INS_PANEL;border:1px solid @INS_LINE;border-radius:8px;"
                        "padding:12px 13px;color:@INS_TX2;"_s);
}
