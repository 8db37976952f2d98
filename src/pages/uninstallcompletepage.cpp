#include "pages/uninstallcompletepage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "widgets/gifbadge.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kBadgeSize = 64;

} // namespace

UninstallCompletePage::UninstallCompletePage(QWidget *parent) : WizardPage(parent)
{
    m_badge = new GifBadge(u":/assets/bye.gif"_s, kBadgeSize, this);
    m_body = layOutFinishPage(this, m_badge, tr("See You Later!"));
}

void UninstallCompletePage::prepare(SetupChoices &choices)
{
    setPreferencesRemoved(choices.removesPreferences);
}

void UninstallCompletePage::setPreferencesRemoved(bool removed)
{
    m_body->setText(removed ? tr("Varnel Schematics and your preferences have been removed.\n"
                                 "Thanks for using it — we hope to see you again soon.")
                            : tr("Varnel Schematics has been removed from your computer.\n"
                                 "Your preferences were kept in case you're back soon."));
}

void UninstallCompletePage::start()
{
    m_badge->pop();
}
