#include "pages/finishedpage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "widgets/sealcheck.h"

FinishedPage::FinishedPage(QWidget *parent) : WizardPage(parent)
{
    m_seal = new SealCheck(this);
    m_body = layOutFinishPage(this, m_seal, tr("Varnel Schematics is installed"));
}

void FinishedPage::prepare(SetupChoices &choices)
{
    if (!choices.folder.isEmpty())
        setResult(choices.folder, choices.desktopShortcut);
}

void FinishedPage::setResult(const QString &path, bool desktopShortcut)
{
    QString text = tr("Installed to %1.").arg(path);
    if (desktopShortcut)
        text += tr("\nA shortcut is on your desktop.");
    m_body->setText(text);
}
