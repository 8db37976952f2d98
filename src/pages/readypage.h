#pragma once

#include "pages/wizardpage.h"

class SummaryBox;

/// Shows what is about to be done, before it is.
class ReadyPage : public WizardPage
{
    Q_OBJECT

public:
    explicit ReadyPage(QWidget *parent = nullptr);

    /// Fills the summary; it keeps the colours of this moment until it is filled again.
    void setSummary(const QString &path, bool desktopShortcut);

    void prepare(SetupChoices &choices) override;

private:
    SummaryBox *m_summary;
};
