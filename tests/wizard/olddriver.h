#pragma once

#include "engine/installerengine.h"
#include "pages/timerwatch.h"
#include "support/sandbox.h"
#include "wizard/installerwizard.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>

class AnimatedMark;
class InstallerFooterBar;
class InstallerPane;
class InstallerTitleBar;
class ProgressTrack;
class SelectionControl;

/// Generous: a busy machine may take its time.
inline constexpr int kPatience = 20'000; // ms

/// The window in a world of its own, with the real engine that runs the stand-in engine program,
/// and the hands of a user.
class WizardDriver
{
public:
    /// With an empty path there is no engine program, and runs are simulated.
    explicit WizardDriver(const QString &setupExecutable = Sandbox::setupEngine());

    /// Enters the first page of `mode`, shows the window and waits until it is settled.
    void show(RunMode mode);

    /// Clicks the footer's button of that text; false if there is none or it is disabled.
    bool press(const QString &text);
    /// Presses one after another; false if one of them is not there.
    bool pressAll(const QStringList &texts);
    /// From the welcome page to the ready page, accepting the licence.
    bool goToReadyPage();
    /// Clicks the option or check box of that text; false if it is not on the page.
    bool click(const QString &text);

    template <typename T>
    [[nodiscard]] T *find() const
    {
        return wizard.findChild<T *>();
    }
    template <typename Page>
    [[nodiscard]] bool shows() const
    {
        return qobject_cast<const Page *>(currentPage()) != nullptr;
    }
    [[nodiscard]] QWidget *currentPage() const;

    [[nodiscard]] QString status() const;
    /// The footer's buttons from left to right: "Back", "Next primary", "Cancel ghost disabled"…
    [[nodiscard]] QStringList buttons() const;
    [[nodiscard]] QPushButton *button(const QString &text) const;
    /// True if that page is shown with that footer; tells what is shown instead otherwise.
    [[nodiscard]] bool hasEntered(QByteArrayView page, const QString &statusText,
                                  const QStringList &buttonTexts) const;

    // What the progress page on screen shows.
    [[nodiscard]] QLabel *caption() const;
    [[nodiscard]] QString file() const;
    [[nodiscard]] QString percent() const;
    [[nodiscard]] ProgressTrack *track() const;
    [[nodiscard]] QStringList steps() const;
    [[nodiscard]] int shownSteps() const;

    /// Lets a simulated run tick to its end right now; false if there is none.
    bool finishSimulation();

    /// Runs the event loop, and `action` in it, until somebody ends it; its exit code, or -1 if
    /// nobody did. `patience` in milliseconds.
    static int runUntilQuit(const std::function<void()> &action, int patience = kPatience);

    Sandbox sandbox;
    TimerWatch watch;
    InstallerEngine engine;
    InstallerWizard wizard;
    InstallerTitleBar *titleBar;
    InstallerPane *pane;
    InstallerFooterBar *footer;
    AnimatedMark *mark;
};
