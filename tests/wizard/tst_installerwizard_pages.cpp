#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/destinationpage.h"
#include "pages/licensepage.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/readytoupdatepage.h"
#include "pages/strictwarnings.h"
#include "pages/taskspage.h"
#include "pages/updatefinishedpage.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/updatingpage.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QGraphicsOpacityEffect>
#include <QTimer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kAccept = u"I accept the license agreement"_s;
const QString kDecline = u"I do not accept the agreement"_s;
const QString kShortcut = u"Create a desktop shortcut"_s;

QString summaryOf(const WizardDriver &driver)
{
    return shownText(driver.currentPage()->findChildren<QLabel *>().last());
}

} // namespace

class TestInstallerWizardPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void installPagesForthAndBack();
    void updatePagesForthAndBack();
    void licenseGate();
    void licenseAnswerIsKept();
    void systemCheckRunsOnEntering();
    void systemCheckIsStoppedOnLeaving();
    void findingsAreSeenUntilTheyAreGone();
    void choicesAreKept();
    void updateOfferTellsTheVersions_data();
    void updateOfferTellsTheVersions();
    void uninstallTellsTheVersion();
    void tenQuickClicks();
    void doubleClickPressesOneButton();
};

void TestInstallerWizardPages::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardPages::installPagesForthAndBack()
{
    const QString next = u"Next"_s;
    WizardDriver driver;
    driver.show(RunMode::Install);

    const auto welcome = [&] {
        return driver.hasEntered("WelcomePage", u"Administrator rights required"_s,
                                 { u"Cancel ghost"_s, u"Next primary"_s });
    };
    const auto license = [&](const QString &nextButton) {
        return driver.hasEntered("LicensePage", u"Read the license before continuing"_s,
                                 { u"Back ghost"_s, nextButton });
    };
    const auto systemCheck = [&] {
        return driver.hasEntered("SystemCheckPage", u"9 requirement(s) checked"_s,
                                 { u"Back ghost"_s, u"Next primary"_s });
    };
    const auto destination = [&] {
        return driver.hasEntered("DestinationPage", u"Choose where Varnel Schematics lives"_s,
                                 { u"Back ghost"_s, u"Next primary"_s });
    };
    const auto tasks = [&] {
        return driver.hasEntered("TasksPage", u"Optional — safe to skip"_s,
                                 { u"Back ghost"_s, u"Next primary"_s });
    };
    const auto ready = [&] {
        return driver.hasEntered("ReadyPage", u"Review before you install"_s,
                                 { u"Back ghost"_s, u"Install primary"_s });
    };

    QVERIFY(welcome());
    QVERIFY(driver.press(next));
    QVERIFY(license(u"Next primary disabled"_s));
    QVERIFY(driver.click(kAccept));
    QVERIFY(driver.press(next));
    QVERIFY(systemCheck());
    QVERIFY(driver.press(next));
    QVERIFY(destination());
    QVERIFY(driver.press(next));
    QVERIFY(tasks());
    QVERIFY(driver.press(next));
    QVERIFY(ready());

    const QString back = u"Back"_s;
    QVERIFY(driver.press(back));
    QVERIFY(tasks());
    QVERIFY(driver.press(back));
    QVERIFY(destination());
    QVERIFY(driver.press(back));
    QVERIFY(systemCheck());
    QVERIFY(driver.press(back));
    QVERIFY(license(u"Next primary"_s));
    QVERIFY(driver.press(back));
    QVERIFY(welcome());
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardPages::updatePagesForthAndBack()
{
    WizardDriver driver;
    driver.show(RunMode::Update);
    QVERIFY(driver.press(u"Update Now"_s));
    QVERIFY(driver.hasEntered("ReadyToUpdatePage", u"Review before you update"_s,
                              { u"Back ghost"_s, u"Update primary"_s }));
    QVERIFY(driver.press(u"Back"_s));
    QVERIFY(driver.hasEntered("UpdateAvailablePage", u"Recommended — includes performance fixes"_s,
                              { u"Skip ghost"_s, u"Update Now primary"_s }));
}

void TestInstallerWizardPages::licenseGate()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!driver.press(u"Next"_s));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(driver.click(kAccept));
        QVERIFY(driver.button(u"Next"_s)->isEnabled());
        QVERIFY(driver.click(kDecline));
        QVERIFY(!driver.button(u"Next"_s)->isEnabled());
    }
    QVERIFY(driver.button(u"Back"_s)->isEnabled());
    QVERIFY(driver.shows<LicensePage>());
}

void TestInstallerWizardPages::licenseAnswerIsKept()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(kAccept));
    QVERIFY(driver.pressAll({ u"Back"_s, u"Next"_s }));
    QVERIFY(driver.find<LicensePage>()->isAccepted());
    QVERIFY(driver.button(u"Next"_s)->isEnabled());
    QVERIFY(driver.click(kDecline));
    QVERIFY(!driver.button(u"Next"_s)->isEnabled());
    QVERIFY(driver.pressAll({ u"Back"_s, u"Next"_s }));
    QVERIFY(!driver.button(u"Next"_s)->isEnabled());
}

// It informs and does not gate: nothing here has a runtime for Windows programs, and Next is
// enabled.
void TestInstallerWizardPages::systemCheckRunsOnEntering()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const auto *page = driver.find<SystemCheckPage>();
    QCOMPARE(page->checkCount(), 0);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(kAccept));
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(page->checkCount(), 9);
    auto rows = page->findChildren<SystemCheckPage::CheckRow *>();
    QVERIFY(std::any_of(rows.begin(), rows.end(), [](auto *row) { return !row->result().ok; }));
    QVERIFY(driver.button(u"Next"_s)->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(rows.last()->reveal(), 1.0, kPatience);

#ifdef Q_OS_LINUX
    // The disk that is probed is that of the folder that is chosen by now.
    QVERIFY(driver.press(u"Next"_s));
    driver.find<DestinationPage>()->setPath(u"/proc"_s);
    QVERIFY(driver.press(u"Back"_s));
    QTRY_COMPARE_WITH_TIMEOUT(page->findChildren<SystemCheckPage::CheckRow *>().size(), 9,
                              kPatience);
    rows = page->findChildren<SystemCheckPage::CheckRow *>();
    QVERIFY(rows[3]->result().value.endsWith(u" on /proc"_s));
#endif
}

void TestInstallerWizardPages::systemCheckIsStoppedOnLeaving()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(kAccept));
    QVERIFY(driver.press(u"Next"_s));
    const auto rows = driver.find<SystemCheckPage>()->findChildren<SystemCheckPage::CheckRow *>();
    QTRY_VERIFY_WITH_TIMEOUT(rows.first()->reveal() > 0.0, kPatience);
    QVERIFY(driver.press(u"Next"_s));
    for (const auto *row : rows) {
        QCOMPARE(row->reveal(), 0.0);
        QVERIFY(!row->isRevealed());
    }
    driver.watch.clear();
    QTimer later;
    later.setSingleShot(true);
    later.start(1100);
    QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), kPatience);
    for (int delay : { 230, 560, 1000 })
        QVERIFY(!driver.watch.shots().contains(delay));
}

// They are hidden at once, which the picture of the page that goes out does not show.
void TestInstallerWizardPages::findingsAreSeenUntilTheyAreGone()
{
    ManualClock clock;
    for (const QString &way : { u"Next"_s, u"Back"_s }) {
        WizardDriver driver;
        driver.show(RunMode::Install);
        QVERIFY(driver.press(u"Next"_s));
        QVERIFY(driver.click(kAccept));
        QVERIFY(driver.press(u"Next"_s));
        auto *page = driver.find<SystemCheckPage>();
        clock.pass(320);
        const auto rows = page->findChildren<SystemCheckPage::CheckRow *>();
        QCOMPARE(rows.size(), 9);
        QTRY_VERIFY_WITH_TIMEOUT(rows.last()->isRevealed(), kPatience);
        clock.pass(300);
        QCOMPARE(rows.last()->reveal(), 1.0);

        const QImage before = grabWidget(*driver.pane);
        QVERIFY(driver.press(way));
        for (const auto *row : rows)
            QCOMPARE(row->reveal(), 0.0);
        QVERIFY(grabWidget(*driver.pane) == before);
        clock.pass(60);
        QVERIFY(page->x() < 0 && page->isVisible());
        // Of each badge, eight pixels from the left, there is as much as of the whole page.
        const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(page->graphicsEffect());
        QVERIFY(effect && effect->opacity() > 0.2 && effect->opacity() < 0.8);
        const QImage picture = grabWidget(*driver.pane);
        for (const auto *row : rows) {
            const QPointF badge = row->mapTo(driver.pane, QPoint(1, row->height() / 2));
            const QColor full = colourAt(before, badge - page->pos());
            QVERIFY(full != themedColor(u"@INS_BG"_s));
            QCOMPARE(difference(colourAt(picture, badge),
                                blended(full, effect->opacity(), themedColor(u"@INS_BG"_s)), 3),
                     QString());
        }
        clock.pass(320);
        QVERIFY(!page->isVisible());
    }
}

void TestInstallerWizardPages::choicesAreKept()
{
    const QString folder = QDir::toNativeSeparators(u"/opt/a&b <i>%2 %1"_s);
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QCOMPARE(summaryOf(driver),
             u"Destination location:\n%1\n\nAdditional tasks:\n%2"_s.arg(
                 QDir::toNativeSeparators(driver.sandbox.path(u"programs/Varnel Schematics"_s)),
                 kShortcut));

    QVERIFY(driver.press(u"Back"_s));
    QVERIFY(driver.click(kShortcut));
    QVERIFY(driver.press(u"Back"_s));
    driver.find<DestinationPage>()->setPath(folder);
    QVERIFY(driver.pressAll({ u"Back"_s, u"Back"_s, u"Back"_s, u"Next"_s }));
    QVERIFY(driver.find<LicensePage>()->isAccepted());
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s, u"Next"_s }));
    QVERIFY(!driver.find<TasksPage>()->desktopShortcut());
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(summaryOf(driver),
             u"Destination location:\n"_s + folder + u"\n\nAdditional tasks:\n(none)");
}

void TestInstallerWizardPages::updateOfferTellsTheVersions_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("installedText");
    QTest::addColumn<QString>("folderText");
    QTest::newRow("recorded") << u"1.6.8"_s << u"/opt/varnel/"_s << u"Installed 1.6.8"_s
                              << u"/opt/varnel"_s;
    // The engine makes the product's folder there.
    QTest::newRow("root of a drive")
        << u"1.6.8"_s << uR"(D:\\)"_s << u"Installed 1.6.8"_s << u"D:/Varnel Schematics"_s;
    QTest::newRow("root of a drive, roundabout")
        << u"1.6.8"_s << uR"(D:\Tools\..\)"_s << u"Installed 1.6.8"_s << u"D:/Varnel Schematics"_s;
    QTest::newRow("markup") << kLiteral << u"/opt/a&b <i>%2"_s << u"Installed "_s + kLiteral
                            << u"/opt/a&b <i>%2"_s;
    QTest::newRow("nothing recorded")
        << QString() << QString() << u"Installed not found"_s << QString();
}

void TestInstallerWizardPages::updateOfferTellsTheVersions()
{
    QFETCH(QString, version);
    QFETCH(QString, location);
    QFETCH(QString, installedText);
    QFETCH(QString, folderText);
    folderText = QDir::toNativeSeparators(folderText);
    WizardDriver driver;
    driver.sandbox.recordInstallation(version, location);
    driver.show(RunMode::Update);
    QStringList texts;
    for (const QLabel *label : driver.currentPage()->findChildren<QLabel *>())
        texts.append(shownText(label));
    QVERIFY(texts.contains(installedText));
    QVERIFY(texts.contains(u"Available 1.6.9"_s));

    QVERIFY(driver.press(u"Update Now"_s));
    QVERIFY(
        labelOf(driver.currentPage(), u"Setup will update Varnel Schematics to version 1.6.9."_s));
    const QString shownFolder =
        folderText.isEmpty() ? uR"(C:\Program Files\Varnel Schematics)"_s : folderText;
    QCOMPARE(summaryOf(driver),
             u"Destination location:\n"_s + shownFolder
                 + u"\n\nYour preferences and license will be kept.");
}

void TestInstallerWizardPages::uninstallTellsTheVersion()
{
    WizardDriver driver;
    driver.show(RunMode::Uninstall);
    QVERIFY(
        labelOf(driver.currentPage(), u"This will remove Varnel Schematics from your computer."_s));
    driver.sandbox.recordInstallation(u"1.6.8"_s, u"/opt/varnel"_s);
    driver.wizard.setRunMode(RunMode::Uninstall);
    QVERIFY(labelOf(driver.currentPage(),
                    u"This will remove Varnel Schematics 1.6.8 from your computer."_s));
}

// The next page's button lies where the last page's was.
void TestInstallerWizardPages::doubleClickPressesOneButton()
{
    WizardDriver driver;
    driver.show(RunMode::Update);
    const QPushButton *button = driver.button(u"Update Now"_s);
    QVERIFY(button);
    const QPoint place = button->mapTo(&driver.wizard, button->rect().center());
    QTest::mouseDClick(driver.wizard.windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(driver.shows<ReadyToUpdatePage>());
    // It was the gesture and not the place.
    const QPushButton *next = driver.button(u"Update"_s);
    QVERIFY(next->geometry().contains(driver.footer->mapFrom(&driver.wizard, place)));
    QTest::mouseClick(driver.wizard.windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(driver.shows<UpdatingPage>());
}

void TestInstallerWizardPages::tenQuickClicks()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    for (int i = 0; i < 5; ++i) {
        // As quick as can be: without a turn of the event loop in between.
        driver.button(u"Back"_s)->click();
        driver.button(u"Next"_s)->click();
    }
    QVERIFY(driver.hasEntered("ReadyPage", u"Review before you install"_s,
                              { u"Back ghost"_s, u"Install primary"_s }));
    const auto visiblePages = [&] {
        int count = 0;
        for (const QObject *child : driver.pane->children()) {
            const auto *page = qobject_cast<const QWidget *>(child);
            count += page && page->isVisible() ? 1 : 0;
        }
        return count;
    };
    QTRY_COMPARE_WITH_TIMEOUT(visiblePages(), 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(driver.footer->findChildren<QPushButton *>().size(), 2, kPatience);
    QVERIFY(driver.currentPage()->isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(driver.currentPage()->geometry(), driver.pane->rect(), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(!driver.currentPage()->graphicsEffect(), kPatience);
}

QTEST_MAIN(TestInstallerWizardPages)
#include "tst_installerwizard_pages.moc"
