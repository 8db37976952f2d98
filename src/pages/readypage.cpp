#include "pages/readypage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "pages/summarybox.h"
#include "theme/themed.h"

using namespace Qt::Literals::StringLiterals;

ReadyPage::ReadyPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Ready to Install"),
                tr("Setup is now ready to begin installing Varnel Schematics on your computer."));
    layout->addSpacing(18);
    m_summary = new SummaryBox(this);
    layout->addWidget(m_summary);
    layout->addStretch();
}

void ReadyPage::prepare(SetupChoices &choices)
{
    if (!choices.folder.isEmpty())
        setSummary(choices.folder, choices.desktopShortcut);
}

void ReadyPage::setSummary(const QString &path, bool desktopShortcut)
{
    m_summary->setRichText(
        tr("<span style=\"color:%1;font-weight:600;\">Destination location:</span><br>%2<br><br>"
           "<span style=\"color:%1;font-weight:600;\">Additional tasks:</span><br>%3")
            .arg(themed(u"@INS_TX"_s), u"%1"_s,
                 desktopShortcut ? tr("Create a desktop shortcut") : tr("(none)")),
        path);
}
