#include "pages/summarybox.h"

#include "theme/fonts.h"
#include "theme/stylesheets.h"
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
    setThemedStyleSheet(this, panelStyle(u"12px 13px"_s, u"@INS_TX2"_s));
}
