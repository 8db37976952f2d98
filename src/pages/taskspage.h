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

private:
    ToggleCheckbox *m_desktopShortcut;
};
