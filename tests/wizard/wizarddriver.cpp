#include "wizard/wizarddriver.h"

#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "widgets/selectioncontrol.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installertitlebar.h"
#include "wizard/keyguard.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"

#include <QApplication>
#include <QGraphicsEffect>
#include <QTimer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

QPushButton *named(const QWidget &bar, const QString &accessibleName)
{
    for (QPushButton *button : bar.findChildren<QPushButton *>()) {
        if (button->accessibleName() == accessibleName)
            return button;
    }
    qFatal("No button %s", qPrintable(accessibleName));
}

ProgressParts::ProgressParts(const QWidget *page)
    : steps(page->findChild<StepList *>()),
      file(page->findChild<QLabel *>(u"file"_s)),
      percent(page->findChild<QLabel *>(u"percentage"_s)),
      track(page->findChild<ProgressTrack *>()),
      caption(page->findChild<QLabel *>(u"caption"_s))
{}

QStringList ProgressParts::stepTexts() const
{
    QStringList texts;
    for (const StepList::StepRow *row : steps->findChildren<StepList::StepRow *>())
        texts.append(row->text());
    return texts;
}

bool ProgressParts::barSweeps() const
{
    track->setIndeterminatePhase(0.5); // in the middle
    const QPointF middle = QRectF(track->rect()).center();
    return colourAt(grabWidget(*track), middle) == themedColor(u"@INS_ACCENT"_s);
}

int shownSteps(const StepList &steps)
{
    int count = 0;
    bool gap = false;
    for (const StepList::StepRow *row : steps.findChildren<StepList::StepRow *>()) {
        if (row->isRevealed() && gap)
            return -1;
        gap = gap || !row->isRevealed();
        count += row->isRevealed() ? 1 : 0;
    }
    return count;
}

WizardDriver::WizardDriver(const QString &setupExecutable)
    : titleBar(wizard.findChild<InstallerTitleBar *>()),
      pane(wizard.findChild<InstallerPane *>()),
      footer(wizard.findChild<InstallerFooterBar *>()),
      mark(wizard.findChild<AnimatedMark *>())
{
    engine.setSetupExecutable(setupExecutable);
    wizard.setEngine(&engine);
}

void WizardDriver::show(RunMode mode)
{
    wizard.setRunMode(mode);
    wizard.show();
    // The window has posted what it still wants to do; this comes after it.
    bool settled = false;
    QTimer::singleShot(0, &wizard, [&] { settled = true; });
    if (!QTest::qWaitFor([&] { return settled; }, kPatience))
        qFatal("The event loop stands still");
}

bool WizardDriver::open(RunMode mode)
{
    show(mode);
    return QTest::qWaitForWindowActive(&wizard);
}

bool WizardDriver::startRun(RunMode mode)
{
    show(mode);
    return pressOnToTheRun(mode);
}

bool WizardDriver::pressOnToTheRun(RunMode mode)
{
    switch (mode) {
    case RunMode::Install:
        return goToReadyPage() && press(u"Install"_s);
    case RunMode::Update:
        return pressAll({ u"Update Now"_s, u"Update"_s });
    case RunMode::Uninstall:
        return press(u"Uninstall"_s);
    }
    return false;
}

bool WizardDriver::press(const QString &text)
{
    QPushButton *target = button(text);
    // A button that has just been added shows up with the next turn of the event loop.
    if (!target || !QTest::qWaitFor([&] { return target->isVisible(); }, kPatience))
        return false;
    if (!target->isEnabled())
        return false;
    QTest::mouseClick(target, Qt::LeftButton);
    return true;
}

bool WizardDriver::pressAll(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!press(text))
            return false;
    }
    return true;
}

bool WizardDriver::goToReadyPage()
{
    return press(u"Next"_s) && click(kAccept)
        && pressAll({ u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s });
}

bool WizardDriver::click(const QString &text)
{
    for (SelectionControl *control : currentPage()->findChildren<SelectionControl *>()) {
        if (control->text() != text)
            continue;
        QTest::mouseClick(control, Qt::LeftButton);
        return true;
    }
    return false;
}

QWidget *WizardDriver::currentPage() const
{
    const QObjectList &pages = pane->children(); // one that goes out is below the one that comes
    const auto page = std::find_if(pages.rbegin(), pages.rend(), [](const QObject *child) {
        const auto *widget = qobject_cast<const QWidget *>(child);
        return widget && !widget->isHidden();
    });
    return page == pages.rend() ? nullptr : qobject_cast<QWidget *>(*page);
}

bool WizardDriver::shows(QByteArrayView page) const
{
    return currentPage() && currentPage()->metaObject()->className() == page;
}

bool WizardDriver::comesTo(QByteArrayView page) const
{
    return QTest::qWaitFor([&] { return shows(page); }, kPatience);
}

QString WizardDriver::status() const
{
    return footer->findChild<QLabel *>()->text();
}

QStringList WizardDriver::buttons() const
{
    QStringList texts;
    for (const QPushButton *button : footer->buttons()) {
        texts.append(button->text() + u' ' + button->property("insVariant").toString()
                     + (button->isEnabled() ? u""_s : u" disabled"_s));
    }
    return texts;
}

QPushButton *WizardDriver::button(const QString &text) const
{
    for (QPushButton *button : footer->buttons()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

QPushButton *WizardDriver::closeButton() const
{
    return titleBar->findChild<QPushButton *>(u"insCloseBtn"_s);
}

QPushButton *WizardDriver::minimizeButton() const
{
    return named(*titleBar, u"Minimize"_s);
}

void WizardDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    settle();
    QTest::keyClick(wizard.windowHandle(), key, modifiers);
    settle();
}

QString WizardDriver::focus()
{
    settle();
    const QWidget *widget = QApplication::focusWidget();
    if (!widget)
        return {};
    const auto *control = qobject_cast<const QAbstractButton *>(widget);
    return control ? control->text() : QString::fromLatin1(widget->metaObject()->className());
}

QStringList WizardDriver::tabOrder()
{
    // The page before this one takes its time to go.
    if (!QTest::qWaitFor([this] { return !currentPage()->graphicsEffect(); }, kPatience))
        return {};
    minimizeButton()->setFocus(Qt::TabFocusReason);
    const QString first = focus();
    QStringList stops;
    do {
        stops.append(focus());
        key(Qt::Key_Tab);
    } while (focus() != first && stops.size() < 20);
    return stops;
}

void WizardDriver::settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

QTimer *WizardDriver::finishDelay() const
{
    constexpr int kDelay = 500; // ms
    for (QTimer *timer : wizard.findChildren<QTimer *>()) {
        if (timer->isSingleShot() && timer->interval() == kDelay
            && !qobject_cast<KeyGuard *>(timer->parent()))
            return timer;
    }
    qFatal("Nothing delays the finish page");
}

QTimer *WizardDriver::simulationTimer() const
{
    constexpr int kTick = 70; // ms
    return QTest::qWaitFor([&] { return watch.repeating(kTick) != nullptr; }, kPatience)
        ? watch.repeating(kTick)
        : nullptr;
}

bool WizardDriver::finishSimulation() const
{
    QTimer *timer = simulationTimer();
    if (!timer || !timer->isActive())
        return false;
    TimerWatch::fire(timer, 100);
    return !timer->isActive();
}

int WizardDriver::runUntilQuit(const std::function<void()> &action, int patience)
{
    QTimer guard;
    guard.setSingleShot(true);
    guard.callOnTimeout([] { QCoreApplication::exit(-1); });
    guard.start(patience);
    QTimer::singleShot(0, &guard, action);
    return QCoreApplication::exec();
}
