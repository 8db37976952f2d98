#include "pages/wizardpage.h"

#include "widgets/spokentext.h"
#include "widgets/togglecheckbox.h"

#include <QLabel>
#include <QTextDocumentFragment>

namespace {

QString plainText(const QLabel &label)
{
    return label.textFormat() == Qt::RichText
        ? QTextDocumentFragment::fromHtml(label.text()).toPlainText()
        : label.text();
}

} // namespace

void WizardPage::prepare(SetupChoices &) {}

void WizardPage::start() {}

void WizardPage::leave(SetupChoices &) {}

QString WizardPage::spokenSummary() const
{
    QStringList texts;
    for (const QWidget *widget : findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(this))
            continue;
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            texts += plainText(*label);
        else if (const auto *box = qobject_cast<const ToggleCheckbox *>(widget))
            texts +=
                (box->isChecked() ? tr("%1, checked") : tr("%1, not checked")).arg(box->text());
    }
    return spokenText(texts);
}
