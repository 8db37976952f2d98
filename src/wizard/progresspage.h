#pragma once

#include "pages/wizardpage.h"

class FittedLabel;
class ProgressTrack;
class QLabel;
class StepList;

/// A run as the user sees it. What the three progress pages share, which is all but their texts
/// and, on one of them, a badge beside the head.
class ProgressPage : public WizardPage
{
    Q_OBJECT

public:
    /// Prepares the page for a new run: steps hidden, bar empty, "0%", the page's own caption.
    void begin(const QStringList &steps);
    /// Begins with the steps of a run with these choices.
    void prepare(SetupChoices &choices) override;
    void leave(SetupChoices &choices) override;

    /// Sweeps the bar for as long as there is no figure; false shows the figure again.
    void setWaiting(bool waiting);
    /// Shows how far the run is, 0 to 1, in bar, percentage and steps. Ends the waiting.
    void setProgress(double fraction);
    /// Shows the file being worked on, as it is. A long name takes more lines, upwards: what is
    /// below it and the percentage beside it stay where they are.
    void setCurrentFile(const QString &path);
    /// Replaces the caption below the bar.
    void setStatus(const QString &status);
    /// Shows every step as done.
    void completeSteps();
    /// Shows in the caption's place why the run ended early.
    void showError(const QString &message);
    /// Shows bar and percentage in their final state at once, before work that blocks painting.
    void settle();
    /// Empties the bar at once.
    void resetBar();

    /// The step that is being worked on; empty before the first figure.
    [[nodiscard]] QString currentStep() const;
    /// What is being done or, after an error, why it ended.
    [[nodiscard]] QString spokenSummary() const override;

protected:
    struct Texts
    {
        QString title;
        QString body;
        QString caption;
    };
    /// `badge` may be null; it is put at the left of title and body.
    explicit ProgressPage(const Texts &texts, QWidget *badge, QWidget *parent);

private:
    void styleCaption();

    Texts m_texts;
    bool m_hasError = false;
    StepList *m_steps;
    FittedLabel *m_fileLabel;
    QLabel *m_percentLabel;
    ProgressTrack *m_track;
    FittedLabel *m_captionLabel;
};
