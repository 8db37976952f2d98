// What follows a success.

#include "pages/manualclock.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/gifbadge.h"
#include "widgets/look.h"
#include "widgets/progresstrack.h"
#include "widgets/sealcheck.h"
#include "wizard/installerpane.h"
#include "wizard/installertitlebar.h"
#include "wizard/wizardtest.h"

#include <QDir>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>
#include <QProperty>
#include <QTimer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kConfettiDelay = 300; // ms
constexpr int kIdleDelay = 780; // ms

/// From the first page to a simulated run that has just ended; the finish page is yet to come.
bool finishRun(WizardDriver &driver, RunMode mode)
{
    return driver.startRun(mode) && driver.finishSimulation();
}

} // namespace

class TestInstallerWizardFinish : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void celebration();
    void badgeAppearsAfterARemoval();
    void leavingThePage();
    void barLooksFullUntilItsPageIsGone();
    void preferencesAreRemovedAfterTheCaptionIsPainted();
    void openStartsTheApplicationOnce();
};

void TestInstallerWizardFinish::celebration()
{
    WizardDriver driver { QString() };
    auto *overlay = driver.find<ConfettiOverlay>();
    const auto levelOf = [&driver](QWidget *part) {
        return driver.wizard.children().indexOf(part);
    };
    QVERIFY(!overlay->isVisible());
    QVERIFY(levelOf(overlay) < levelOf(driver.titleBar));
    QPointF burst; // before anything has moved
    QPointF sealMiddle;
    const EventWatch watch(overlay, QEvent::Show, [&] {
        burst = inkRect(grabWidget(*overlay)).center();
        const auto *seal = driver.currentPage()->findChild<SealCheck *>();
        sealMiddle = QRectF(seal->rect()).center() + seal->mapTo(&driver.wizard, QPoint());
    });
    driver.show(RunMode::Install);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(driver.pressOnToTheRun(RunMode::Install) && driver.finishSimulation());
    driver.watch.clear();
    QVERIFY(driver.comesTo("FinishedPage"));
    QCOMPARE(driver.mark->fill(), 1.0);
    const auto *seal = driver.currentPage()->findChild<SealCheck *>();
    QTRY_VERIFY_WITH_TIMEOUT(seal->circleProgress() > 0.0, kPatience); // by itself, and at once
    // The mark floats when its time has come, and not before.
    if (!driver.watch.shots().contains(kIdleDelay))
        QCOMPARE(driver.mark->driftOffset(), 0.0);

    QTRY_VERIFY_WITH_TIMEOUT(overlay->isVisible(), kPatience);
    QCOMPARE(driver.watch.shots().count(kConfettiDelay), 1);
    // All pieces start in the middle of the seal, which may still be coming in with its page.
    QVERIFY2(std::abs(burst.x() - sealMiddle.x()) < 4 && std::abs(burst.y() - sealMiddle.y()) < 3,
             qPrintable(u"%1 %2"_s.arg(burst.x()).arg(burst.y())));

    QTRY_COMPARE_WITH_TIMEOUT(driver.watch.shots().count(kIdleDelay), 1, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != 0.0, kPatience);
    for (int delay : { 80, 200, 440, 620 }) // the mark's entrance is played again, part by part
        QTRY_COMPARE_WITH_TIMEOUT(driver.watch.shots().count(delay), 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(seal->checkProgress(), 1.0, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(!overlay->isVisible(), kPatience);
}

void TestInstallerWizardFinish::badgeAppearsAfterARemoval()
{
    WizardDriver driver { QString() };
    driver.show(RunMode::Uninstall);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(driver.pressOnToTheRun(RunMode::Uninstall) && driver.finishSimulation());
    driver.watch.clear();
    QVERIFY(driver.comesTo("UninstallCompletePage"));
    QCOMPARE(driver.mark->fill(), 0.0);
    QVERIFY(driver.mark->a4Progress() < 1.0);
    QVERIFY(driver.currentPage()->findChild<GifBadge *>()->popProgress() < 1.0);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(!driver.watch.shots().contains(kConfettiDelay));
    QVERIFY(!driver.find<ConfettiOverlay>()->isVisible());
    QVERIFY(driver.mark->driftOffset() != 0.0); // the ghost of it floats as on any page
    QCOMPARE(driver.watch.shots().count(kIdleDelay), 0);
}

// It calls off confetti that is still to come; what is in the air flies on.
void TestInstallerWizardFinish::leavingThePage()
{
    WizardDriver driver { QString() };
    auto *overlay = driver.find<ConfettiOverlay>();
    QVERIFY(finishRun(driver, RunMode::Update));
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    driver.watch.clear();
    driver.wizard.setRunMode(RunMode::Update);
    QTest::qWait(kIdleDelay + 200);
    QVERIFY(!driver.watch.shots().contains(kConfettiDelay));
    QVERIFY(!driver.watch.shots().contains(kIdleDelay));
    QVERIFY(!overlay->isVisible());
    QVERIFY(driver.shows("UpdateAvailablePage"));

    QVERIFY(finishRun(driver, RunMode::Update));
    QTRY_VERIFY_WITH_TIMEOUT(overlay->isVisible(), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(inkRect(grabWidget(*overlay)).width() > 150, kPatience);
    const QImage picture = grabWidget(*overlay, 4.0);
    for (QRgb colour : { 0x064cad, 0xff3131, 0x0a5ec9, 0x545454, 0xf3b23d, 0x1f9d63 })
        QVERIFY2(!inkRect(picture, colour).isEmpty(), qPrintable(QString::number(colour, 16)));
    driver.wizard.setRunMode(RunMode::Update);
    QVERIFY(overlay->isVisible());
}

// The bar is emptied at once, but the picture of the page that fades out still has it.
void TestInstallerWizardFinish::barLooksFullUntilItsPageIsGone()
{
    ManualClock clock;
    WizardDriver driver { QString() };
    QVERIFY(driver.startRun(RunMode::Install));
    clock.pass(320);
    QVERIFY(driver.finishSimulation());
    const QWidget *page = driver.currentPage();
    ProgressTrack *track = driver.progress().track;
    track->setValue(1.0); // where it glides to
    QVERIFY(driver.comesTo("FinishedPage"));
    QCOMPARE(track->value(), 0.0);
    QCOMPARE(track->target(), 0.0);

    clock.pass(60);
    const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(page->graphicsEffect());
    QVERIFY(effect && effect->opacity() > 0.2 && effect->opacity() < 0.8);
    const QColor faded =
        blended(themedColor(u"@INS_ACCENT"_s), effect->opacity(), themedColor(u"@INS_BG"_s));
    const QImage picture = grabWidget(*driver.pane);
    for (double fraction : { 0.02, 0.5, 0.98 }) {
        const QPointF place =
            track->mapTo(driver.pane, QPointF(fraction * track->width(), track->height() / 2.0));
        QCOMPARE(difference(colourAt(picture, place), faded, 3), QString());
    }
}

// Removing a large folder takes a while, in which nothing is painted.
void TestInstallerWizardFinish::preferencesAreRemovedAfterTheCaptionIsPainted()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(kDeletePreferences));
    QVERIFY(driver.press(u"Uninstall"_s));

    const auto arePreferencesThere = [&] { return !driver.sandbox.read(kPreferences).isEmpty(); };
    bool wasAnnounced = false;
    const ProgressParts shown = driver.progress();
    QCOMPARE(shown.stepTexts().size(), 5);
    const EventWatch watch(shown.caption, QEvent::Paint, [&] {
        if (shown.caption->text() != u"Finishing up…" || !arePreferencesThere())
            return;
        wasAnnounced = true;
        // This is what is seen for as long as it takes.
        QCOMPARE(shown.track->value(), 1.0);
        QCOMPARE(shown.percent->text(), u"100%"_s);
        QVERIFY(shown.percent->width() >= shown.percent->sizeHint().width());
    });
    QTimer *delay = driver.finishDelay();
    QList<bool> preferencesAtStart;
    const auto startWatch = delay->bindableActive().addNotifier([&] {
        if (delay->isActive())
            preferencesAtStart << arePreferencesThere();
    });
    QVERIFY(arePreferencesThere());
    Q_EMIT driver.engine.progress(1.0);
    Q_EMIT driver.engine.finished(true, QString());
    QVERIFY(wasAnnounced);
    QCOMPARE(preferencesAtStart, QList<bool> { false });
    QVERIFY(driver.comesTo("UninstallCompletePage"));
}

void TestInstallerWizardFinish::openStartsTheApplicationOnce()
{
    WizardDriver driver;
    const QString folder = driver.sandbox.nativePath(u"elsewhere/"_s + Sandbox::oddName());
    QVERIFY(QDir().mkpath(folder));
    driver.sandbox.recordInstallation(u"1.6.8"_s, folder + u'/');
    QVERIFY(driver.startRun(RunMode::Update));
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    const int code = WizardDriver::runUntilQuit([&] {
        driver.button(kOpen)->click();
        driver.button(kOpen)->click();
        driver.closeButton()->click();
        QVERIFY(!driver.wizard.isVisible());
    });
    QCOMPARE(code, 0);
    const auto launches = [&driver] { return driver.sandbox.read(u"launches.txt"_s).trimmed(); };
    QTRY_VERIFY_WITH_TIMEOUT(!launches().isEmpty(), kPatience);
    QCOMPARE(WizardDriver::runUntilQuit([] {}, 400), -1); // nothing ends or starts any more
    const QString where = QDir::toNativeSeparators(QFileInfo(folder).canonicalFilePath());
    const QString expected = folder + QDir::separator() + u"VarnelSolutions.exe\t" + where;
    QCOMPARE(launches(), expected.toUtf8());
}

QTEST_MAIN(TestInstallerWizardFinish)
#include "tst_installerwizard_finish.moc"
