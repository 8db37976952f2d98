#include "app/applicationfonts.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/gifbadge.h"
#include "widgets/look.h"
#include "widgets/progresstrack.h"
#include "widgets/sealcheck.h"
#include "wizard/installerpane.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QProperty>
#include <QTimer>

#include <cmath>
#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kConfettiDelay = 300; // ms
constexpr int kIdleDelay = 780; // ms
constexpr int kFinishDelay = 500; // ms
const QString kPreferences = u"appdata/Varnel Schematics/Varnel Schematics/settings.ini"_s;

/// Takes a picture of the overlay at the moment at which it appears, before anything has moved.
class FirstLook : public QObject
{
public:
    explicit FirstLook(ConfettiOverlay *overlay) : m_overlay(overlay)
    {
        overlay->installEventFilter(this);
    }

    QImage picture;
    QPointF sealMiddle; ///< in the window
    bool isOnTop = false;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            picture = grabWidget(*m_overlay);
            isOnTop = m_overlay->parentWidget()->children().last() == m_overlay;
            for (const auto *seal : m_overlay->window()->findChildren<SealCheck *>()) {
                if (seal->isVisible())
                    sealMiddle =
                        QRectF(seal->rect()).center() + seal->mapTo(m_overlay->window(), QPoint());
            }
        }
        return false;
    }

private:
    ConfettiOverlay *m_overlay;
};

/// From the first page to a simulated run that has just ended; the finish page is yet to come.
bool goOnToTheEnd(WizardDriver &driver, RunMode mode)
{
    const bool started = mode == RunMode::Install
        ? driver.goToReadyPage() && driver.press(u"Install"_s)
        : mode == RunMode::Update ? driver.pressAll({ u"Update Now"_s, u"Update"_s })
                                  : driver.press(u"Uninstall"_s);
    return started && driver.finishSimulation();
}

QTimer *finishDelay(const WizardDriver &driver)
{
    for (QTimer *timer : driver.wizard.findChildren<QTimer *>()) {
        if (timer->isSingleShot() && timer->interval() == kFinishDelay)
            return timer;
    }
    return nullptr;
}

/// Calls `look` each time the widget is painted.
class PaintingWatch : public QObject
{
public:
    PaintingWatch(QWidget *widget, const std::function<void()> &look) : m_look(look)
    {
        widget->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_look();
        return false;
    }

private:
    std::function<void()> m_look;
};

bool finishRun(WizardDriver &driver, RunMode mode)
{
    driver.show(mode);
    return goOnToTheEnd(driver, mode);
}

QRect inkOf(const QImage &picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).alpha() > 0)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

} // namespace

class TestInstallerWizardFinish : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void pages_data();
    void pages();
    void installTellsWhatWasDone();
    void celebration_data();
    void celebration();
    void confettiColours();
    void confettiLetsClicksThrough();
    void uninstallSaysGoodbye();
    void preferencesGoBetweenTheCaptionAndTheDelay();
    void leavingVoidsTheDelay();
    void barIsSeenFullUntilItIsGone();
    void leavingVoidsTheCelebration();
};

void TestInstallerWizardFinish::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardFinish::pages_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<double>("fill");
    const QStringList two { u"Close ghost"_s, u"Open Varnel Schematics primary"_s };
    QTest::newRow("install") << RunMode::Install << QByteArray("FinishedPage")
                             << u"Finished in 51 seconds"_s << two << 1.0;
    QTest::newRow("update") << RunMode::Update << QByteArray("UpdateFinishedPage")
                            << u"Updated in 38 seconds"_s << two << 1.0;
    QTest::newRow("uninstall") << RunMode::Uninstall << QByteArray("UninstallCompletePage")
                               << u"Uninstalled in 24 seconds"_s << QStringList { u"Close ghost"_s }
                               << 0.0;
}

void TestInstallerWizardFinish::pages()
{
    QFETCH(RunMode, mode);
    QFETCH(QByteArray, page);
    WizardDriver driver { QString() };
    driver.show(mode);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(goOnToTheEnd(driver, mode));
    driver.watch.clear();
    QTRY_COMPARE_WITH_TIMEOUT(QByteArray(driver.currentPage()->metaObject()->className()), page,
                              kPatience);
    QTEST(driver.status(), "status");
    QTEST(driver.buttons(), "buttons");
    QTEST(driver.mark->fill(), "fill");
    // Its entrance is played again, part by part.
    for (int delay : { 80, 200, 440, 620 })
        QTRY_COMPARE_WITH_TIMEOUT(driver.watch.shots().count(delay), 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QTEST(driver.mark->fill(), "fill");
}

void TestInstallerWizardFinish::installTellsWhatWasDone()
{
    WizardDriver driver { QString() };
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage(u"/opt/"_s + kLiteral));
    QVERIFY(driver.press(u"Install"_s));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    QVERIFY(labelOf(driver.currentPage(),
                    u"Installed to "_s + QDir::toNativeSeparators(u"/opt/"_s + kLiteral)
                        + u".\nA shortcut is on your desktop."));
}

void TestInstallerWizardFinish::celebration_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::newRow("install") << RunMode::Install;
    QTest::newRow("update") << RunMode::Update;
}

void TestInstallerWizardFinish::celebration()
{
    QFETCH(RunMode, mode);
    WizardDriver driver { QString() };
    auto *overlay = driver.find<ConfettiOverlay>();
    const FirstLook look(overlay);
    QVERIFY(finishRun(driver, mode));
    driver.watch.clear();
    const QWidget *progressPage = driver.currentPage();
    QTRY_VERIFY_WITH_TIMEOUT(driver.currentPage() != progressPage, kPatience);
    // It floats when its time has come, and not before.
    QCOMPARE(driver.mark->isIdle(), driver.watch.shots().count(kIdleDelay) > 0);
    const auto *seal = driver.currentPage()->findChild<SealCheck *>();
    QTRY_VERIFY_WITH_TIMEOUT(seal->circleProgress() > 0.0, kPatience); // by itself, and at once

    QTRY_VERIFY_WITH_TIMEOUT(overlay->isVisible(), kPatience);
    QCOMPARE(driver.watch.shots().count(kConfettiDelay), 1);
    QCOMPARE(overlay->pieceCount(), 110);
    QVERIFY(look.isOnTop);
    QCOMPARE(overlay->geometry(), driver.wizard.rect());

    // All pieces start in the middle of the seal, which may still be coming in with its page.
    const QRectF ink(inkOf(look.picture));
    QVERIFY(ink.width() <= 14 && ink.height() <= 14);
    const QPointF distance = ink.center() - look.sealMiddle;
    QVERIFY2(std::abs(distance.x()) < 4 && std::abs(distance.y()) < 3,
             qPrintable(u"%1 %2"_s.arg(distance.x()).arg(distance.y())));

    QTRY_COMPARE_WITH_TIMEOUT(driver.watch.shots().count(kIdleDelay), 1, kPatience);
    QVERIFY(driver.mark->isIdle());
    QTRY_COMPARE_WITH_TIMEOUT(seal->checkProgress(), 1.0, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(!overlay->isVisible(), kPatience);
    QCOMPARE(driver.watch.shots().count(kConfettiDelay), 1);
}

void TestInstallerWizardFinish::confettiColours()
{
    const QList<QColor> palette { QColor(0x06, 0x4c, 0xad), QColor(0xff, 0x31, 0x31),
                                  QColor(0x0a, 0x5e, 0xc9), QColor(0x54, 0x54, 0x54),
                                  QColor(0xf3, 0xb2, 0x3d), QColor(0x1f, 0x9d, 0x63) };
    WizardDriver driver { QString() };
    auto *overlay = driver.find<ConfettiOverlay>();
    QVERIFY(finishRun(driver, RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(overlay->isVisible(), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(inkOf(grabWidget(*overlay)).width() > 150, kPatience);
    // Pieces fade as they fly, so the colour is what is behind the opacity.
    QList<int> found(palette.size(), 0);
    int others = 0;
    const QImage picture = grabWidget(*overlay, 4.0);
    for (int y = 0; y < picture.height(); y += 2) {
        for (int x = 0; x < picture.width(); x += 2) {
            const QColor colour = picture.pixelColor(x, y);
            if (colour.alpha() < 100)
                continue;
            int nearest = -1;
            for (qsizetype i = 0; i < palette.size(); ++i) {
                if (std::abs(colour.red() - palette[i].red()) < 6
                    && std::abs(colour.green() - palette[i].green()) < 6
                    && std::abs(colour.blue() - palette[i].blue()) < 6)
                    nearest = int(i);
            }
            if (nearest < 0)
                ++others;
            else
                ++found[nearest];
        }
    }
    int total = 0;
    for (int count : found) {
        QVERIFY(count > 0);
        total += count;
    }
    // Where two pieces overlap, other colours come about.
    QVERIFY2(others < total / 5, qPrintable(u"%1 of %2"_s.arg(others).arg(total)));
}

void TestInstallerWizardFinish::confettiLetsClicksThrough()
{
    WizardDriver driver { QString() };
    auto *overlay = driver.find<ConfettiOverlay>();
    QVERIFY(finishRun(driver, RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(overlay->isVisible(), kPatience);
    QVERIFY(overlay->testAttribute(Qt::WA_TransparentForMouseEvents));
    const QPushButton *close = driver.button(u"Close"_s);
    QTRY_VERIFY_WITH_TIMEOUT(close->isVisible(), kPatience);
    QCOMPARE(driver.wizard.childAt(close->mapTo(&driver.wizard, close->rect().center())), close);
}

void TestInstallerWizardFinish::uninstallSaysGoodbye()
{
    WizardDriver driver { QString() };
    QVERIFY(finishRun(driver, RunMode::Uninstall));
    auto *badge = driver.find<UninstallCompletePage>()->findChild<GifBadge *>();
    badge->setPopProgress(0.5);
    driver.watch.clear();
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);
    QVERIFY(driver.mark->isIdle()); // what is left of it, the ghost, floats like on any page
    QTRY_COMPARE_WITH_TIMEOUT(badge->popProgress(), 1.0, kPatience);
    QVERIFY(labelOf(driver.currentPage(),
                    u"Varnel Schematics has been removed from your computer.\n"
                    "Your preferences were kept in case you're back soon."_s));
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(!driver.watch.shots().contains(kConfettiDelay));
    QVERIFY(!driver.find<ConfettiOverlay>()->isVisible());
    QVERIFY(driver.mark->isIdle());
    QCOMPARE(driver.watch.shots().count(kIdleDelay), 0);
}

// It is emptied at once, which the picture of the page that goes out does not show.
void TestInstallerWizardFinish::barIsSeenFullUntilItIsGone()
{
    ManualClock clock;
    WizardDriver driver { QString() };
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    clock.pass(320);
    QVERIFY(driver.finishSimulation());
    const QWidget *page = driver.currentPage();
    ProgressTrack *track = driver.track();
    track->setValue(1.0); // where it glides to
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
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
    clock.pass(320);
    QVERIFY(!page->isVisible());
}

// A large folder takes its time, in which nothing is painted.
void TestInstallerWizardFinish::preferencesGoBetweenTheCaptionAndTheDelay()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(u"Also delete my preferences and cached data"_s));
    QVERIFY(driver.press(u"Uninstall"_s));

    const auto arePreferencesThere = [&] { return !driver.sandbox.read(kPreferences).isEmpty(); };
    bool wasAnnounced = false;
    const QLabel *caption = driver.caption();
    const PaintingWatch watch(driver.caption(), [&] {
        if (caption->text() != u"Finishing up…" || !arePreferencesThere())
            return;
        wasAnnounced = true;
        // This is what is seen for as long as it takes.
        QCOMPARE(driver.track()->value(), 1.0);
        const QLabel *percentage = labelOf(driver.currentPage(), u"100%"_s);
        QVERIFY(percentage->width() >= percentage->sizeHint().width());
    });
    QTimer *delay = finishDelay(driver);
    QVERIFY(delay);
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
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);
}

void TestInstallerWizardFinish::leavingVoidsTheDelay()
{
    WizardDriver driver { QString() };
    QVERIFY(finishRun(driver, RunMode::Install));
    const QTimer *delay = finishDelay(driver);
    QVERIFY(delay && delay->isActive());
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!delay->isActive());
    QVERIFY(driver.shows<WelcomePage>());
}

void TestInstallerWizardFinish::leavingVoidsTheCelebration()
{
    WizardDriver driver { QString() };
    QVERIFY(finishRun(driver, RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    driver.watch.clear();
    driver.wizard.setRunMode(RunMode::Install);
    QTimer later;
    later.setSingleShot(true);
    later.start(kIdleDelay + 200);
    QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), kPatience);
    QVERIFY(!driver.watch.shots().contains(kConfettiDelay));
    QVERIFY(!driver.watch.shots().contains(kIdleDelay));
    QVERIFY(!driver.find<ConfettiOverlay>()->isVisible());
    QVERIFY(driver.shows<WelcomePage>());
}

QTEST_MAIN(TestInstallerWizardFinish)
#include "tst_installerwizard_finish.moc"
