#pragma once

#include "pages/wizardpage.h"

class QButtonGroup;
class RadioOption;

/// Shows the licence and asks whether it is accepted; it is not until the user says so.
class LicensePage : public WizardPage
{
    Q_OBJECT

public:
    explicit LicensePage(QWidget *parent = nullptr);

    [[nodiscard]] bool isAccepted() const;

    [[nodiscard]] bool isComplete() const override { return isAccepted(); }
    /// The answer that is chosen now.
    [[nodiscard]] QWidget *firstUnanswered() const override;
    [[nodiscard]] QString spokenSummary() const override;

Q_SIGNALS:
    /// Each time the answer changes, and only then.
    void acceptedChanged(bool accepted);

private:
    QButtonGroup *m_answers;
    RadioOption *m_accept;
};
