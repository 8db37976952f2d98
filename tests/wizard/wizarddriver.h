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
class StepList;

/// Generous: a busy machine may take its time.
inline constexpr int kPatience = 20'000; // ms

inline const QString kAccept = QStringLiteral("I accept the license agreement");
inline const QString kDecline = QStringLiteral("I do not accept the agreement");
inline const QString kShortcut = QStringLiteral("Create a desktop shortcut");
inline const QString kDeletePreferences =
    QStringLiteral("Also delete my preferences and cached data");
inline const QString kOpen = QStringLiteral("Open Varnel Schematics");

/// The application's settings, in a sandbox.
inline const QString kPreferences =
    QStringLiteral("appdata/Varnel Schematics/Varnel Schematics/settings.ini");

/// Calls `look` just before each event of that type reaches `widget`.
class EventWatch : public QObject
{
public:
    EventWatch(QWidget *widget, QEvent::Type type, const std::function<void()> &look)
        : m_type(type), m_look(look)
    {
        widget->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == m_type)
            m_look();
        return false;
    }

private:
    QEvent::Type m_type;
    std::function<void()> m_look;
};

/// The button in `bar` that a screen reader calls by that name.
[[nodiscard]] QPushButton *named(const QWidget &bar, const QString &accessibleName);

/// How many steps are shown; -1 if one is without the one before it.
[[nodiscard]] int shownSteps(const StepList &steps);

/// What is on a progress page.
struct ProgressParts
{
    explicit ProgressParts(const QWidget *page);

    [[nodiscard]] QStringList stepTexts() const;
    [[nodiscard]] int shownSteps() const { return ::shownSteps(*steps); }
    /// Whether the bar sweeps, as long as it is less than half full.
    [[nodiscard]] bool barSweeps() const;

    StepList *steps;
    QLabel *file;
    QLabel *percent;
    ProgressTrack *track;
    QLabel *caption;
};

/// The window in a sandbox, with the real engine running the stand-in engine program; driven as a
/// user would.
class WizardDriver
{
public:
    /// With an empty path there is no engine program, and runs are simulated.
    explicit WizardDriver(const QString &setupExecutable = Sandbox::setupEngine());

    /// Enters the first page of `mode`, shows the window and waits until it is settled.
    void show(RunMode mode);
    /// Like show(), and waits until the window has the focus.
    [[nodiscard]] bool open(RunMode mode);
    /// Like show(), and presses on until the run has just been started.
    [[nodiscard]] bool startRun(RunMode mode);
    /// Presses on from the first page of `mode`, which is shown.
    [[nodiscard]] bool pressOnToTheRun(RunMode mode);

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
    [[nodiscard]] QWidget *currentPage() const;
    /// Whether the page of that class is shown.
    [[nodiscard]] bool shows(QByteArrayView page) const;
    /// Waits for the page of that class.
    [[nodiscard]] bool comesTo(QByteArrayView page) const;
    [[nodiscard]] ProgressParts progress() const { return ProgressParts(currentPage()); }

    [[nodiscard]] QString status() const;
    /// The footer's buttons from left to right: "Next primary", "Cancel ghost disabled"…
    [[nodiscard]] QStringList buttons() const;
    [[nodiscard]] QPushButton *button(const QString &text) const;
    [[nodiscard]] QPushButton *closeButton() const; ///< of the title bar
    [[nodiscard]] QPushButton *minimizeButton() const;

    /// Presses a key where the focus is, as a keyboard does.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Text of what has the focus: a button's, or a class name.
    [[nodiscard]] static QString focus();
    /// What the Tab key walks over, from the title bar's first button on, once around.
    [[nodiscard]] QStringList tabOrder();
    /// New buttons show up, and take the focus, with the next turn of the event loop.
    static void settle();

    /// The timer between the end of a run and its finish page.
    [[nodiscard]] QTimer *finishDelay() const;
    /// The timer of a simulated run, once it has ticked.
    [[nodiscard]] QTimer *simulationTimer() const;
    /// Lets a simulated run tick to its end right now; false if there is none.
    [[nodiscard]] bool finishSimulation() const;

    /// Runs the event loop, and `action` in it, until something ends it; its exit code, or -1 if
    /// nothing did. `patience` in milliseconds.
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
