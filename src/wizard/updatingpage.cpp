#include "wizard/updatingpage.h"

#include "widgets/gifbadge.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kBadgeSize = 52;

} // namespace

UpdatingPage::UpdatingPage(QWidget *parent)
    : ProgressPage({ .title = tr("Updating"),
                     .body = tr("Roughly a minute. You can keep using your PC."),
                     .caption = tr("This may take a few minutes.") },
                   new GifBadge(u":/assets/business-development.gif"_s, kBadgeSize), parent)
{}
