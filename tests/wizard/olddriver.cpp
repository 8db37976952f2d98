#include "wizard/olddriver.h"

#include "pages/layoutoutline.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "widgets/selectioncontrol.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installertitlebar.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"

#include <QTimer>

using namespace Qt::Literals::StringLiterals;

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

QPushButton *WizardDriver::button(const QString &text) const
{
    for (QPushButton *button : footer->buttons()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
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
    return press(u"Next"_s) && click(u"I accept the license agreement"_s)
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
    return pane->currentPage();
}

QString WizardDriver::status() const
{
    return footer->statusText();
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

bool WizardDriver::hasEntered(QByteArrayView page, const QString &statusText,
                              const QStringList &buttonTexts) const
{
    const QByteArrayView shown = currentPage()->metaObject()->className();
    if (shown == page && status() == statusText && buttons() == buttonTexts)
        return true;
    qInfo() << shown << status() << buttons();
    return false;
}

namespace {

/// The widget that many places before the end of the page.
template <typename T>
T *fromEnd(const QWidget *page, qsizetype place)
{
    const QList<QWidget *> widgets = layoutWidgets(page->layout());
    return qobject_cast<T *>(widgets[widgets.size() - place]);
}

} // namespace

QLabel *WizardDriver::caption() const
{
    return fromEnd<QLabel>(currentPage(), 1);
}

ProgressTrack *WizardDriver::track() const
{
    return fromEnd<ProgressTrack>(currentPage(), 2);
}

QString WizardDriver::percent() const
{
    return fromEnd<QLabel>(currentPage(), 3)->text();
}

QString WizardDriver::file() const
{
    return fromEnd<QLabel>(currentPage(), 4)->text();
}

QStringList WizardDriver::steps() const
{
    QStringList texts;
    for (const StepList::StepRow *row : fromEnd<StepList>(currentPage(), 5)->rows())
        texts.append(row->text());
    return texts;
}

int WizardDriver::shownSteps() const
{
    int count = 0;
    for (const StepList::StepRow *row : fromEnd<StepList>(currentPage(), 5)->rows())
        count += row->isRevealed() ? 1 : 0;
    return count;
}

bool WizardDriver::finishSimulation()
{
    constexpr int kTick = 70; // ms
    if (!QTest::qWaitFor([&] { return watch.repeating(kTick) != nullptr; }, kPatience))
        return false;
    QTimer *timer = watch.repeating(kTick);
    if (!timer->isActive())
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
