#include "pages/readytoupdatepage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "pages/summarybox.h"
#include "product/product.h"
#include "theme/themed.h"

using namespace Qt::Literals::StringLiterals;

ReadyToUpdatePage::ReadyToUpdatePage(QWidget *parent)
    : WizardPage(parent),
      m_version(Product::kVersion.toString()),
      m_folder(uR"(C:\Program Files\)" + Product::kName)
{
    QVBoxLayout *layout = pageLayout(this);
    m_body = addPageHead(layout, tr("Ready to Update"), {});
    layout->addSpacing(18);
    m_summary = new SummaryBox(this);
    layout->addWidget(m_summary);
    layout->addStretch();
    onThemeChange(this, [this] { rebuild(); });
}

void ReadyToUpdatePage::prepare(SetupChoices &choices)
{
    setDetails(Product::kVersion.toString(),
               choices.recordedFolder.isEmpty() ? QString() : choices.folder);
}

void ReadyToUpdatePage::setDetails(const QString &version, const QString &folder)
{
    m_version = version;
    if (!folder.isEmpty())
        m_folder = folder;
    rebuild();
}

void ReadyToUpdatePage::rebuild()
{
    m_body->setText(tr("Setup will update %1 to version %2.").arg(Product::kName, m_version));
    m_summary->setRichText(
        tr("<span style=\"color:%1;font-weight:600;\">Destination location:</span><br>%2<br><br>"
           "Your preferences and license will be kept.")
            .arg(themed(u"@INS_TX"_s), u"%1"_s),
        m_folder);
}
