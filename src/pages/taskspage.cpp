#include "pages/taskspage.h"

#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "widgets/togglecheckbox.h"

TasksPage::TasksPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(
        layout, tr("Select Additional Tasks"),
        tr("Which additional task should be performed while installing Varnel Schematics?"));
    layout->addSpacing(16);
    m_desktopShortcut = new ToggleCheckbox(tr("Create a desktop shortcut"), this);
    m_desktopShortcut->setChecked(true);
    layout->addWidget(m_desktopShortcut);
    layout->addStretch();
}

void TasksPage::prepare(SetupChoices &choices)
{
    m_desktopShortcut->setChecked(choices.desktopShortcut);
}

void TasksPage::leave(SetupChoices &choices)
{
    choices.desktopShortcut = desktopShortcut();
}

bool TasksPage::desktopShortcut() const
{
    return m_desktopShortcut->isChecked();
}
