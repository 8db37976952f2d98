#pragma once

#include <QWidget>

/// What the pages have in common: each can be told to somebody who does not see it.
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// What to say when the page comes: its title and what matters on it as it stands now, in plain
    /// text. Unless a page knows better, all its texts and whether its boxes are checked.
    [[nodiscard]] virtual QString spokenSummary() const;
};
