// What can be done once a run has failed, and what cannot yet be done right then.

#include "app/applicationfonts.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "wizard/keyboard.h"
#include "wizard/keyguard.h"

#include <QAccessible>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A wizard whose run fails when it is told to.
struct Failure : Keyboard
{
    [[nodiscard]] bool startRun()
    {
        sandbox.setScenario("stall = forever\n");
        return open(RunMode::Update) && pressAll({ u"Update Now"_s, u"Update"_s });
    }
    /// Nothing else happens until the event loop runs.
    void fail() { Q_EMIT engine.finished(false, u"The disk is full."_s); }
    [[nodiscard]] QTimer *guard() const
    {
        return wizard.findChild<KeyGuard *>()->findChild<QTimer *>();
    }
    void passHalfASecond() const { TimerWatch::fire(guard(), 1); }

    /// One event of a key, to whatever has the focus, right now.
    static void send(QEvent::Type type, Qt::Key key, bool isRepeated = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, key == Qt::Key_Space ? u" "_s : QString(),
                        isRepeated);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    }
    static void press(Qt::Key key) { send(QEvent::KeyPress, key); }
    static void release(Qt::Key key) { send(QEvent::KeyRelease, key); }
};

} // namespace

class TestInstallerWizardFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void keyOnItsWayClosesNothing_data();
    void keyOnItsWayClosesNothing();
    void keyOnItsWayClosesNothingFromElsewhere();
    void keyThatIsHeldClosesNothing_data();
    void keyThatIsHeldClosesNothing();
    void keyClosesAfterHalfASecond_data();
    void keyClosesAfterHalfASecond();
    void otherKeysWorkAtOnce();
    void mouseClosesAtOnce();
    void assistiveTechnologyClosesAtOnce();
    void enterNeedsTheFocus();
};

void TestInstallerWizardFailure::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardFailure::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardFailure::keyOnItsWayClosesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("escape") << Qt::Key_Escape;
}

void TestInstallerWizardFailure::keyOnItsWayClosesNothing()
{
    QFETCH(const Qt::Key, key);
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    QCOMPARE(QApplication::focusWidget(), driver.button(u"Close"_s));
    QVERIFY(driver.guard()->isActive());
    QCOMPARE(driver.guard()->intervalAsDuration(), 500ms);
    Failure::press(key);
    QVERIFY(driver.wizard.isVisible());
    QVERIFY(!driver.button(u"Close"_s)->isDown());
    Failure::release(key);
    QVERIFY(driver.wizard.isVisible());
    // Nor does what began within the half second and ends after it.
    Failure::press(key);
    driver.passHalfASecond();
    Failure::release(key);
    QVERIFY(driver.wizard.isVisible());
}

// Somebody may have walked to the title bar during the run; and without a window in front there is
// no focus at all.
void TestInstallerWizardFailure::keyOnItsWayClosesNothingFromElsewhere()
{
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    for (Qt::Key key : { Qt::Key_Escape, Qt::Key_Return }) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&driver.wizard, &event);
        QVERIFY(driver.wizard.isVisible());
    }
}

void TestInstallerWizardFailure::keyThatIsHeldClosesNothing_data()
{
    keyOnItsWayClosesNothing_data();
}

// From before the failure until long after it.
void TestInstallerWizardFailure::keyThatIsHeldClosesNothing()
{
    QFETCH(const Qt::Key, key);
    Failure driver;
    QVERIFY(driver.startRun());
    Failure::press(key);
    driver.fail();
    Failure::send(QEvent::KeyPress, key, true);
    driver.passHalfASecond();
    Failure::send(QEvent::KeyPress, key, true);
    Failure::release(key);
    QVERIFY(driver.wizard.isVisible());
}

void TestInstallerWizardFailure::keyClosesAfterHalfASecond_data()
{
    keyOnItsWayClosesNothing_data();
}

void TestInstallerWizardFailure::keyClosesAfterHalfASecond()
{
    QFETCH(const Qt::Key, key);
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    QTRY_VERIFY_WITH_TIMEOUT(!driver.guard()->isActive(), kPatience);
    QCOMPARE(Failure::runUntilQuit([&] { driver.lastKey(key); }), 0);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizardFailure::otherKeysWorkAtOnce()
{
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    Failure::press(Qt::Key_Tab);
    QVERIFY(QApplication::focusWidget() != driver.button(u"Close"_s));
}

void TestInstallerWizardFailure::mouseClosesAtOnce()
{
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    QVERIFY(driver.guard()->isActive());
    QTest::mouseClick(driver.button(u"Close"_s), Qt::LeftButton);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizardFailure::assistiveTechnologyClosesAtOnce()
{
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    QAccessibleInterface *close = QAccessible::queryAccessibleInterface(driver.button(u"Close"_s));
    QVERIFY(close);
    QVERIFY(!close->state().disabled);
    close->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY_WITH_TIMEOUT(!driver.wizard.isVisible(), kPatience);
}

void TestInstallerWizardFailure::enterNeedsTheFocus()
{
    Failure driver;
    QVERIFY(driver.startRun());
    driver.fail();
    QTRY_VERIFY_WITH_TIMEOUT(!driver.guard()->isActive(), kPatience);
    driver.titleBar->findChildren<QPushButton *>().first()->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.wizard.isVisible());
    driver.button(u"Close"_s)->setFocus();
    QCOMPARE(Failure::runUntilQuit([&] { driver.lastKey(Qt::Key_Return); }), 0);
    QVERIFY(!driver.wizard.isVisible());
}

QTEST_MAIN(TestInstallerWizardFailure)
#include "tst_installerwizard_failure.moc"
