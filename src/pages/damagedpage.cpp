#include "pages/damagedpage.h"

#include "bundle/unpack.h"
#include "pages/pagelabels.h"

DamagedPage::DamagedPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Setup cannot start"), damagedSentence());
    layout->addStretch();
}
