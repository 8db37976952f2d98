#include "pages/confirmuninstallpage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "product/product.h"
#include "system/installation.h"
#include "widgets/togglecheckbox.h"

using namespace Qt::Literals::StringLiterals;

ConfirmUninstallPage::ConfirmUninstallPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    m_body = addPageHead(layout, tr("Uninstall %1").arg(Product::kName), {});
    layout->addSpacing(16);

    QLabel *warning = pageCallout(
        tr("This cannot be undone. Your project files (.sch, .pcb) will not be deleted."),
        u"color:@INS_TX2;border-left:2px solid @INS_RED;padding-left:11px;"_s, this);
    layout->addWidget(warning);
    layout->addSpacing(14);

    m_deletePreferences =
        new ToggleCheckbox(tr("Also delete my preferences and cached data"), this);
    layout->addWidget(m_deletePreferences);
    layout->addStretch();
    setVersion({});
}

void ConfirmUninstallPage::prepare(SetupChoices &choices)
{
    if (choices.uninstaller.isEmpty())
        choices.uninstaller = uninstallerPath();
    setVersion(installedVersion());
    m_deletePreferences->setChecked(choices.removesPreferences);
}

void ConfirmUninstallPage::leave(SetupChoices &choices)
{
    choices.removesPreferences = deletePreferences();
}

void ConfirmUninstallPage::setVersion(const QString &version)
{
    QString name = Product::kName.toString();
    if (!version.isEmpty())
        name += u' ' + version;
    m_body->setText(tr("This will remove %1 from your computer.").arg(name));
}

bool ConfirmUninstallPage::deletePreferences() const
{
    return m_deletePreferences->isChecked();
}
