#include "pages/newerinstalledpage.h"

#include "pages/pagelabels.h"
#include "product/product.h"
#include "system/installation.h"

NewerInstalledPage::NewerInstalledPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    m_body = addPageHead(layout, tr("A newer version is installed"), {});
    layout->addStretch();
}

void NewerInstalledPage::prepare(SetupChoices &)
{
    m_body->setText(tr("%1 %2 is installed, which is newer than %3.\n"
                       "Remove it first if you want the older version.")
                        .arg(Product::kName, installedVersion(), Product::kVersion));
}
