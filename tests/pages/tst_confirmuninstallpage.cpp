#include "app/applicationfonts.h"
#include "pages/confirmuninstallpage.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "widgets/togglecheckbox.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kWarning =
    u"This cannot be undone. Your project files (.sch, .pcb) will not be deleted."_s;

} // namespace

class TestConfirmUninstallPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void warning();
    void version_data();
    void version();
    void preferencesStayUnlessAskedFor();
    void fits();
};

void TestConfirmUninstallPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestConfirmUninstallPage::layout()
{
    ConfirmUninstallPage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Uninstall Varnel Schematics"_s,
                 u"gap 5"_s,
                 u"label: This will remove Varnel Schematics from your computer."_s,
                 u"gap 16"_s,
                 u"label: "_s + kWarning,
                 u"gap 14"_s,
                 u"ToggleCheckbox: Also delete my preferences and cached data"_s,
                 u"stretch"_s,
             }));
}

void TestConfirmUninstallPage::warning()
{
    ConfirmUninstallPage page;
    const QLabel *warning = labelOf(&page, kWarning);
    QVERIFY(warning);
    QVERIFY(warning->wordWrap());
    QCOMPARE(warning->font().pixelSize(), 12);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(warning->styleSheet(),
                 coloured(u"color:%1;border-left:2px solid %2;padding-left:11px;"_s,
                          { u"@INS_TX2"_s, u"@INS_RED"_s }));
    }
}

void TestConfirmUninstallPage::version_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("body");
    QTest::newRow("none recorded")
        << QString() << u"This will remove Varnel Schematics from your computer."_s;
    QTest::newRow("recorded") << u"1.6.8"_s
                              << u"This will remove Varnel Schematics 1.6.8 from your computer."_s;
    QTest::newRow("markup") << kLiteral
                            << u"This will remove Varnel Schematics "_s + kLiteral
            + u" from your computer."_s;
}

void TestConfirmUninstallPage::version()
{
    QFETCH(QString, version);
    ConfirmUninstallPage page;
    page.setVersion(u"0.1"_s);
    page.setVersion(version);
    const QLabel *body = page.findChildren<QLabel *>().at(1);
    QCOMPARE(body->textFormat(), Qt::PlainText);
    QTEST(body->text(), "body");
}

void TestConfirmUninstallPage::preferencesStayUnlessAskedFor()
{
    ConfirmUninstallPage page;
    page.resize(kPageSize);
    page.show();
    QVERIFY(!page.deletePreferences());
    auto *box = page.findChild<ToggleCheckbox *>();
    QTest::mouseClick(box, Qt::LeftButton);
    QVERIFY(page.deletePreferences());
    page.setVersion(u"1.6.8"_s);
    QVERIFY(page.deletePreferences());
    QTest::mouseClick(box, Qt::LeftButton);
    QVERIFY(!page.deletePreferences());
}

void TestConfirmUninstallPage::fits()
{
    ConfirmUninstallPage page;
    page.setVersion(longWord());
    QVERIFY(fitsWindow(&page));
    auto *body = page.findChildren<QLabel *>().at(1);
    QStringList lines = shownLines(*body);
    QCOMPARE(lines.takeFirst().trimmed(), u"This will remove Varnel Schematics"_s);
    QCOMPARE(lines.join(QString()), longWord() + u" from your computer."_s);
    // Nobody has such a version, but the question stays in sight even then.
    page.setVersion(longWord().repeated(50));
    QVERIFY(fitsWindow(&page));
    QVERIFY(shownLines(*body).last().endsWith(u" from your computer."_s));
    QVERIFY(toolTipOf(*body).contains(longWord().repeated(50)));
}

QTEST_MAIN(TestConfirmUninstallPage)
#include "tst_confirmuninstallpage.moc"
