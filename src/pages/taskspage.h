#pragma once

#include "pages/wizardpage.h"

class ToggleCheckbox;

/// Asks for the tasks beside copying files.
class TasksPage : public WizardPage
{
    Q_OBJECT

public:
    explicit TasksPage(QWidget *parent = nullptr);

    [[nodiscard]] bool desktopShortcut() const;

    void prepare(SetupChoices &choices) override;
    void leave(SetupChoices &choices) override;

private:
    ToggleCheckbox *m_desktopShortcut;
};
