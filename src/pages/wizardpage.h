#pragma once

#include <QWidget>

struct SetupChoices;
class SealCheck;

/// Base class of all pages. A page is built once, with the window, and may be shown any number of
/// times: each time prepare(), then the page comes in, start(), and in the end leave().
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Before the page is shown: fills it from `choices`, and adds to them what is read from this
    /// machine.
    virtual void prepare(SetupChoices &choices);
    /// The page has begun to come in: starts what it plays.
    virtual void start();
    /// The page is no longer the current one: stores in `choices` what was decided on it, and ends
    /// what it plays. May be called more than once.
    virtual void leave(SetupChoices &choices);

    /// Whether the last button of the footer is enabled.
    [[nodiscard]] virtual bool isComplete() const { return true; }
    /// The control that gets the focus while the page is not complete.
    [[nodiscard]] virtual QWidget *firstUnanswered() const { return nullptr; }

    /// The number for a footer text that has one ("%n").
    [[nodiscard]] virtual int itemCount() const { return 0; }
    /// Played when the page ends a successful run, with confetti that comes from it; null on pages
    /// that celebrate nothing.
    [[nodiscard]] virtual SealCheck *seal() const { return nullptr; }

    /// What to say when the page comes: its title and what matters on it as it stands now, in plain
    /// text. By default all texts and whether the boxes are checked.
    [[nodiscard]] virtual QString spokenSummary() const;

Q_SIGNALS:
    /// Each time isComplete() changes, and only then.
    void completeChanged(bool complete);
};
