#pragma once

#include <QWidget>

struct SetupChoices;
class SealCheck;

/// What the window knows of a page. A page is built once, with the window, and may be shown any
/// number of times: each time prepare(), then the page comes in, start(), and in the end leave().
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Before the page is shown: fills it from `choices`, and adds to them what this machine tells.
    virtual void prepare(SetupChoices &choices);
    /// The page has begun to come in: starts what it plays.
    virtual void start();
    /// The page is no longer the current one: stores in `choices` what was decided on it, and ends
    /// what it plays. May be called more than once.
    virtual void leave(SetupChoices &choices);

    /// Whether one can go on from here.
    [[nodiscard]] virtual bool isComplete() const { return true; }
    /// The control to be used before one can go on. Only asked for if the page is not complete.
    [[nodiscard]] virtual QWidget *openQuestion() const { return nullptr; }

    /// The number for a footer text that has one ("%n").
    [[nodiscard]] virtual int itemCount() const { return 0; }
    /// Played when the page ends a successful run, with confetti that comes from it; null on pages
    /// that celebrate nothing.
    [[nodiscard]] virtual SealCheck *seal() const { return nullptr; }

    /// What to say when the page comes: its title and what matters on it as it stands now, in plain
    /// text. Unless a page knows better, all its texts and whether its boxes are checked.
    [[nodiscard]] virtual QString spokenSummary() const;

Q_SIGNALS:
    /// Each time isComplete() changes, and only then.
    void completeChanged(bool complete);
};
