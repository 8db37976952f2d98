// Nothing moves where nobody sees it, nor where the user wants no motion; and everything is then
// where it would have come to.

#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/licensepage.h"
#include "pages/strictwarnings.h"
#include "pages/systemcheckpage.h"
#include "theme/thememanager.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/sealcheck.h"
#include "wizard/installerpane.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"
#include "wizard/olddriver.h"

#include <QEvent>
#include <QGraphicsEffect>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window, and a look at what in it is timed.
struct Still : WizardDriver
{
    Still() : WizardDriver(QString()) { qApp->installEventFilter(&m_ticks); }

    /// Intervals of the timers that run in the window; engines and simulations are no part of it,
    /// nor is what is told to those who see nothing anyway.
    [[nodiscard]] QList<int> timers() const
    {
        QList<int> running;
        for (const QTimer *timer : wizard.findChildren<QTimer *>()) {
            if (timer->isActive() && !qobject_cast<Announcer *>(timer->parent()))
                running << timer->interval();
        }
        return running;
    }
    /// Whether no timer runs in the window now, and the clock of all animations stops, which takes
    /// it some more ticks. What they have come to is to be looked at before.
    [[nodiscard]] bool rests()
    {
        return timers().isEmpty()
            && QTest::qWaitFor(
                   [this] {
                       m_ticks.count = 0;
                       QTest::qWait(100);
                       return m_ticks.count == 0;
                   },
                   kPatience);
    }
    void minimise()
    {
        wizard.showMinimized();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }
    [[nodiscard]] QList<double> entrance() const
    {
        return { mark->a1Progress(), mark->a2Progress(), mark->a3Progress(), mark->a4Progress() };
    }

private:
    class Ticks : public QObject
    {
    public:
        int count = 0;

    protected:
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Timer && watched->inherits("QAnimationDriver"))
                ++count;
            return false;
        }
    };
    Ticks m_ticks;
};

const QList<double> kEntered { 1.0, 1.0, 1.0, 1.0 };

} // namespace

class TestInstallerWizardStillness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void entranceEndsWhenMinimised();
    void entranceEndsWhenHidden();
    void markFloatsOnAfterwards();
    void pageIsThereWhenMinimised();
    void findingsAreThereWhenMinimised();
    void choiceMadeOutOfSight();
    void runGoesOnOutOfSight();
    void celebrationWaitsToBeSeen();
    void confettiRestsInTheAir();
    void reducedMotionFromTheStart();
    void reducedMotionFindings();
    void reducedMotionSteps();
    void reducedMotionFinish();
};

void TestInstallerWizardStillness::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardStillness::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardStillness::entranceEndsWhenMinimised()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.timers().contains(620)); // the last part still waits
    driver.minimise();
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
    driver.mark->replay();
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::entranceEndsWhenHidden()
{
    Still driver;
    driver.show(RunMode::Install);
    // In the middle: the first parts are on their way, the others still wait.
    QTRY_VERIFY_WITH_TIMEOUT(driver.timers().size() < 4, kPatience);
    driver.wizard.hide();
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
    driver.mark->replay();
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::markFloatsOnAfterwards()
{
    Still driver;
    driver.show(RunMode::Install);
    driver.minimise();
    QVERIFY(driver.rests());
    QVERIFY(driver.mark->isIdle());
    driver.wizard.showNormal();
    const double before = driver.mark->driftOffset();
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != before, kPatience);
}

void TestInstallerWizardStillness::pageIsThereWhenMinimised()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.currentPage()->graphicsEffect()); // it is coming in
    driver.minimise();
    QVERIFY(driver.shows<LicensePage>());
    QVERIFY(!driver.currentPage()->graphicsEffect());
    QCOMPARE(driver.currentPage()->geometry(), driver.pane->rect());
    driver.button(u"Back"_s)->click();
    QVERIFY(!driver.currentPage()->graphicsEffect());
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::findingsAreThereWhenMinimised()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(u"I accept the license agreement"_s));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.shows<SystemCheckPage>());
    const auto rows = driver.currentPage()->findChildren<RevealRow *>();
    QCOMPARE(rows.size(), 9);
    QVERIFY(!rows.last()->isRevealed());
    driver.minimise();
    for (const RevealRow *row : rows)
        QCOMPARE(row->reveal(), 1.0);
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::choiceMadeOutOfSight()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    auto *license = driver.find<LicensePage>();
    const auto options = license->findChildren<RadioOption *>();
    driver.minimise();
    options.last()->setChecked(true);
    QVERIFY(license->isAccepted());
    QCOMPARE(options.first()->selectProgress(), 0.0);
    QCOMPARE(options.last()->selectProgress(), 1.0);
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::runGoesOnOutOfSight()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    driver.minimise();
    ProgressTrack *track = driver.track();
    QTRY_VERIFY_WITH_TIMEOUT(track->target() > 0.1, kPatience);
    QCOMPARE(track->value(), track->target());
    QCOMPARE(driver.mark->fill(), track->target());
    QVERIFY(driver.shownSteps() > 0);
    for (const StepList::StepRow *row : driver.currentPage()->findChild<StepList *>()->rows())
        QCOMPARE(row->reveal(), row->isRevealed() ? 1.0 : 0.0);
    QVERIFY(driver.rests());
}

// The end of a long run is worth a look when the user comes back.
void TestInstallerWizardStillness::celebrationWaitsToBeSeen()
{
    Still driver;
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    driver.minimise();
    QVERIFY(driver.finishSimulation());
    auto *confetti = driver.find<ConfettiOverlay>();
    QTRY_COMPARE_WITH_TIMEOUT(confetti->pieceCount(), 110, kPatience);
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
    const auto *seal = driver.currentPage()->findChild<SealCheck *>();
    QCOMPARE(seal->circleProgress(), 1.0);
    QCOMPARE(seal->checkProgress(), 1.0);
    driver.wizard.showNormal();
    QTRY_COMPARE_WITH_TIMEOUT(confetti->pieceCount(), 0, kPatience);
    QVERIFY(confetti->isHidden());
}

void TestInstallerWizardStillness::confettiRestsInTheAir()
{
    Still driver;
    driver.show(RunMode::Install);
    auto *confetti = driver.find<ConfettiOverlay>();
    confetti->burst({ 300, 200 }, { Qt::red });
    auto *timer = confetti->findChild<QTimer *>();
    QVERIFY(timer->isActive());
    driver.minimise();
    QVERIFY(driver.rests());
    QCOMPARE(confetti->pieceCount(), 110);
    driver.wizard.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(timer->isActive(), kPatience);
}

void TestInstallerWizardStillness::reducedMotionFromTheStart()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Still driver;
    driver.show(RunMode::Install);
    QCOMPARE(driver.entrance(), kEntered);
    QVERIFY(driver.rests());
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.rests());
    QVERIFY(!driver.currentPage()->graphicsEffect());
}

// All of them with the page, and none after another.
void TestInstallerWizardStillness::reducedMotionFindings()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Still driver;
    driver.show(RunMode::Install);
    auto *page = driver.find<SystemCheckPage>();
    page->runChecks({});
    page->setSmartAppControlOn(true);
    page->startReveal();
    for (const RevealRow *row : page->findChildren<RevealRow *>()) {
        QVERIFY(row->isRevealed());
        QCOMPARE(row->reveal(), 1.0);
    }
    const auto *warning = page->findChild<QLabel *>(u"callout"_s);
    QVERIFY(warning);
    QVERIFY(!warning->isHidden());
    QVERIFY(!warning->graphicsEffect()->isEnabled()); // it is there in full
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::reducedMotionSteps()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    StepList list;
    list.setSteps({ u"a"_s, u"b"_s, u"c"_s, u"d"_s });
    const auto shown = [&list] {
        QList<double> reveals;
        for (const StepList::StepRow *row : list.rows())
            reveals << row->reveal();
        return reveals;
    };
    list.setProgress(0.5);
    QCOMPARE(shown(), QList<double>({ 1.0, 1.0, 1.0, 0.0 }));
    list.complete();
    QCOMPARE(shown(), kEntered);
    list.reset();
    QCOMPARE(shown(), QList<double>({ 0.0, 0.0, 0.0, 0.0 }));
}

void TestInstallerWizardStillness::reducedMotionFinish()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Still driver;
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Close"_s), kPatience);
    const auto *seal = driver.currentPage()->findChild<SealCheck *>();
    QVERIFY(seal);
    QCOMPARE(seal->circleProgress(), 1.0);
    QCOMPARE(seal->checkProgress(), 1.0);
    QCOMPARE(driver.entrance(), kEntered);
    QCOMPARE(driver.find<ConfettiOverlay>()->pieceCount(), 0);
    QVERIFY(driver.find<ConfettiOverlay>()->isHidden());
    QVERIFY(driver.rests());
}

QTEST_MAIN(TestInstallerWizardStillness)
#include "tst_installerwizard_stillness.moc"
