#pragma once

#include <QList>
#include <QWidget>

class QVBoxLayout;

/// The steps of a run, which appear one by one as the work advances.
class StepList : public QWidget
{
    Q_OBJECT

public:
    class StepRow;

    explicit StepList(QWidget *parent = nullptr);

    /// Replaces the rows; all are hidden.
    void setSteps(const QStringList &steps);
    /// Shows row i of n from a fraction of i / n on, so the first with the first figure there is.
    void setProgress(double fraction);
    /// Hides all rows at once.
    void reset();
    /// Shows the rows that are still missing.
    void complete();

    /// Text of the last step that is shown; empty if none is.
    [[nodiscard]] QString currentStep() const;

private:
    QVBoxLayout *m_layout;
    QList<StepRow *> m_rows;
};
