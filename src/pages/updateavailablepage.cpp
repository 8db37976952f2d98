#include "pages/updateavailablepage.h"

#include "pages/fittedlabel.h"
#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "product/product.h"
#include "system/installation.h"
#include "theme/fonts.h"
#include "theme/stylesheets.h"
#include "theme/themed.h"

#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kChipHeight = 30;
constexpr char kPrefixProperty[] = "chipPrefix";
constexpr char kVersionProperty[] = "chipVersion";

void restyleChip(FittedLabel *chip)
{
    chip->setRichText(
        u"%1 <span style=\"color:%2;font-weight:600;\">%3</span>"_s.arg(
            chip->property(kPrefixProperty).toString(), themed(u"@INS_TX"_s), u"%1"_s),
        chip->property(kVersionProperty).toString());
    chip->setStyleSheet(themed(panelStyle(u"0 12px"_s, u"@INS_TX2"_s)));
}

void setChipVersion(FittedLabel *chip, const QString &version)
{
    chip->setProperty(kVersionProperty, version);
    restyleChip(chip);
}

/// A framed label with a caption and a version.
FittedLabel *versionChip(const QString &prefix, QWidget *page)
{
    auto *chip = new FittedLabel(shortenMiddle, page);
    chip->setFixedHeight(kChipHeight);
    chip->setFont(monospacedFont(11));
    chip->setProperty(kPrefixProperty, prefix);
    onThemeChange(chip, [chip] { restyleChip(chip); });
    return chip;
}

} // namespace

UpdateAvailablePage::UpdateAvailablePage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Update Available for Varnel Schematics"),
                tr("A newer version is ready to install.\n"
                   "Your settings and files will be kept."));
    layout->addSpacing(16);

    // In reading order, which assistive technology follows.
    m_installed = versionChip(tr("Installed"), this);
    auto *arrow = new QLabel(u"→"_s, this);
    QFont arrowFont = arrow->font();
    arrowFont.setPixelSize(13);
    arrow->setFont(arrowFont);
    setThemedStyleSheet(arrow, u"color:@INS_TX3;"_s);
    m_available = versionChip(tr("Available"), this);

    auto *row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(m_installed);
    row->addWidget(arrow);
    row->addWidget(m_available);
    row->addStretch();
    layout->addLayout(row);
    layout->addStretch();
}

void UpdateAvailablePage::prepare(SetupChoices &choices)
{
    setVersions(installedVersion(), Product::kVersion.toString());
    choices.recordedFolder = installLocation();
    if (!choices.recordedFolder.isEmpty())
        choices.folder = updateFolder(choices.recordedFolder);
}

void UpdateAvailablePage::setVersions(const QString &installed, const QString &available)
{
    const QString present = installed.isEmpty() ? tr("not found") : installed;
    setChipVersion(m_installed, present);
    setChipVersion(m_available, available);
    // Screen readers skip labels of two words when they read a new window.
    m_installed->setAccessibleName(tr("Installed version: %1").arg(present));
    m_available->setAccessibleName(tr("Available version: %1").arg(available));
}
