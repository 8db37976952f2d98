#pragma once

#include "pages/wizardpage.h"
#include "widgets/delayedstart.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QList>
#include <QPropertyAnimation>
#include <QVBoxLayout>

/// Shows the system requirements, row by row. One that is not met does not disable "Next".
class SystemCheckPage : public WizardPage
{
    Q_OBJECT

public:
    class CheckRow;

    explicit SystemCheckPage(QWidget *parent = nullptr);

    /// Probes the machine and replaces the rows, all hidden. An empty path stands for the file
    /// system's root.
    void runChecks(const QString &destinationPath);
    /// Shows the rows one after another, and after them the warning if there is cause for it.
    void startReveal();
    /// Hides the rows and the warning at once and cancels pending starts.
    void resetReveal();

    /// Says that Smart App Control is on or off, in its row and for the warning.
    void setSmartAppControlOn(bool on);

    void prepare(SetupChoices &choices) override;
    void start() override;
    void leave(SetupChoices &choices) override;
    [[nodiscard]] int itemCount() const override { return checkCount(); }
    [[nodiscard]] QString spokenSummary() const override;

    /// Number of rows of the last run.
    [[nodiscard]] int checkCount() const { return int(m_rows.size()); }

private:
    void hideWarning();
    void followWarningOpacity(double opacity);

    QString m_title;
    QWidget *m_rowContainer;
    QVBoxLayout *m_rowLayout;
    QList<CheckRow *> m_rows;
    CheckRow *m_smartAppControlRow = nullptr;
    QLabel *m_warning;
    QGraphicsOpacityEffect *m_warningOpacity;
    QPropertyAnimation m_warningAnimation;
    DelayedStart m_warningDelay;
    bool m_warningNeeded = false;
};
