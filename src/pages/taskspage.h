#pragma once

#include <QWidget>

class ToggleCheckbox;

/// Asks for the tasks beside copying files.
class TasksPage : public QWidget
{
    Q_OBJECT

public:
    explicit TasksPage(QWidget *parent = nullptr);

    [[nodiscard]] bool desktopShortcut() const;

private:
    ToggleCheckbox *m_desktopShortcut;
};
