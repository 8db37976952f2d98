#pragma once

#include "pages/wizardpage.h"

class QLabel;
class ToggleCheckbox;

/// Names what will be removed, warns that it is final, and offers to remove the preferences too.
class ConfirmUninstallPage : public WizardPage
{
    Q_OBJECT

public:
    explicit ConfirmUninstallPage(QWidget *parent = nullptr);

    /// `version` of the installed copy; may be empty.
    void setVersion(const QString &version);

    [[nodiscard]] bool deletePreferences() const;

    /// Chooses the recorded uninstaller, unless another one is given.
    void prepare(SetupChoices &choices) override;
    void leave(SetupChoices &choices) override;

private:
    QLabel *m_body;
    ToggleCheckbox *m_deletePreferences;
};
