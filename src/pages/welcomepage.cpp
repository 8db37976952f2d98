#include "pages/welcomepage.h"

#include "pages/pagelabels.h"
#include "product/product.h"

WelcomePage::WelcomePage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Welcome to the %1 Setup Wizard").arg(Product::kName),
                tr("Setup will install %1 version %2 on this computer.\n"
                   "We recommend closing any other applications before you continue.")
                    .arg(Product::kName, Product::kVersion));
    layout->addSpacing(12);
    layout->addWidget(pageCaptionLabel(
        tr("Publisher: %1 · %2").arg(Product::kPublisher, Product::kWebAddress), this));
    layout->addStretch();
}
