#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "support/grab.h"
#include "theme/thememanager.h"
#include "widgets/gifbadge.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestUninstallCompletePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void badgePlaysThePicture();
    void farewell();
    void startPopsTheBadge();
    void fits();
};

void TestUninstallCompletePage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestUninstallCompletePage::layout()
{
    UninstallCompletePage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"GifBadge, left"_s,
                 u"gap 14"_s,
                 u"label: See You Later!"_s,
                 u"gap 5"_s,
                 u"label: "_s,
                 u"stretch"_s,
             }));
    page.resize(kPageSize);
    page.layout()->activate();
    QCOMPARE(page.findChild<GifBadge *>()->geometry(), QRect(22, 18, 64, 64));
}

// A badge without its picture is a white disc.
void TestUninstallCompletePage::badgePlaysThePicture()
{
    UninstallCompletePage page;
    page.resize(kPageSize);
    page.layout()->activate();
    GifBadge expected(u":/assets/bye.gif"_s, 64);
    expected.resize(64, 64);
    const QImage picture = grabWidget(*page.findChild<GifBadge *>());
    QCOMPARE(picture, grabWidget(expected));
    QVERIFY(pixelsUnlike(picture.copy(20, 20, 24, 24), Qt::white) > 0);
}

void TestUninstallCompletePage::farewell()
{
    UninstallCompletePage page;
    const auto *body = page.findChildren<QLabel *>().last();
    page.setPreferencesRemoved(true);
    QCOMPARE(body->text(),
             u"Varnel Schematics and your preferences have been removed.\n"
             "Thanks for using it — we hope to see you again soon."_s);
    page.setPreferencesRemoved(false);
    QCOMPARE(body->text(),
             u"Varnel Schematics has been removed from your computer.\n"
             "Your preferences were kept in case you're back soon."_s);
}

void TestUninstallCompletePage::startPopsTheBadge()
{
    ManualClock clock;
    UninstallCompletePage page;
    const auto *badge = page.findChild<GifBadge *>();
    QCOMPARE(badge->popProgress(), 1.0);
    page.start();
    QCOMPARE(badge->popProgress(), 0.0);
    clock.pass(390);
    QVERIFY(badge->popProgress() > 0.0);
    clock.pass(10);
    QCOMPARE(badge->popProgress(), 1.0);
}

void TestUninstallCompletePage::fits()
{
    UninstallCompletePage page;
    page.setPreferencesRemoved(true);
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestUninstallCompletePage)
#include "tst_uninstallcompletepage.moc"
