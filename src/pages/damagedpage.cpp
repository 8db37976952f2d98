#include "pages/damagedpage.h"

#include "bundle/unpack.h"
#include "pages/pagelabels.h"
#include "product/product.h"

DamagedPage::DamagedPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Setup cannot start"), damagedSentence());
    layout->addSpacing(12);
    layout->addWidget(pageCaptionLabel(
        tr("Publisher: %1 · %2").arg(Product::kPublisher, Product::kWebAddress), this));
    layout->addStretch();
}
