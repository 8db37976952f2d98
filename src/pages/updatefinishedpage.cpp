#include "pages/updatefinishedpage.h"

#include "pages/pagelabels.h"
#include "product/product.h"
#include "widgets/sealcheck.h"

UpdateFinishedPage::UpdateFinishedPage(QWidget *parent) : WizardPage(parent)
{
    m_seal = new SealCheck(this);
    m_body = layOutFinishPage(this, m_seal, tr("Varnel Schematics has been updated"));
    setVersion(Product::kVersion.toString());
}

void UpdateFinishedPage::prepare(SetupChoices &)
{
    setVersion(Product::kVersion.toString());
}

void UpdateFinishedPage::setVersion(const QString &version)
{
    m_body->setText(tr("Now running version %1.\nYour settings were preserved.").arg(version));
}
