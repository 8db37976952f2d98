#pragma once

#include "pages/wizardpage.h"

class FittedLabel;

/// Offers the version that this wizard carries, beside the installed one.
class UpdateAvailablePage : public WizardPage
{
    Q_OBJECT

public:
    explicit UpdateAvailablePage(QWidget *parent = nullptr);

    /// An empty `installed` reads "not found".
    void setVersions(const QString &installed, const QString &available);

    /// Chooses the folder of the recorded copy, if there is one.
    void prepare(SetupChoices &choices) override;

private:
    FittedLabel *m_installed;
    FittedLabel *m_available;
};
