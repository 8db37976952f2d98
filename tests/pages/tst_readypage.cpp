#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/readypage.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QLabel *summaryOf(const ReadyPage &page)
{
    return page.findChildren<QLabel *>().last();
}

QString summaryText(const QString &path, const QString &task)
{
    return coloured(u"<span style=\"color:%1;font-weight:600;\">Destination location:</span><br>"_s,
                    { u"@INS_TX"_s })
        + path
        + coloured(
               u"<br><br><span style=\"color:%1;font-weight:600;\">Additional tasks:</span><br>"_s,
               { u"@INS_TX"_s })
        + task;
}

} // namespace

class TestReadyPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void summary_data();
    void summary();
    void summaryKeepsTheColourOfItsMoment();
    void fits_data();
    void fits();
};

void TestReadyPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestReadyPage::layout()
{
    ReadyPage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Ready to Install"_s,
                 u"gap 5"_s,
                 u"label: Setup is now ready to begin installing Varnel Schematics on your "
                 "computer."_s,
                 u"gap 18"_s,
                 u"label: "_s,
                 u"stretch"_s,
             }));
}

void TestReadyPage::summary_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("shortcut");
    QTest::addColumn<QString>("pathText");
    QTest::addColumn<QString>("taskText");
    const QString usual = uR"(C:\Program Files\Varnel Schematics)"_s;
    const QString wanted = u"Create a desktop shortcut"_s;
    QTest::newRow("with a shortcut") << usual << true << usual << wanted;
    QTest::newRow("without a shortcut") << usual << false << usual << u"(none)"_s;
    QTest::newRow("ampersand and angle brackets")
        << u"/opt/a&b <i>"_s << true << u"/opt/a&amp;b &lt;i&gt;"_s << wanted;
    QTest::newRow("an entity is no entity") << u"/a&lt;b"_s << true << u"/a&amp;lt;b"_s << wanted;
    QTest::newRow("runs of blanks") << u"/a  b   c"_s << true << u"/a \u00a0b \u00a0 c"_s << wanted;
    QTest::newRow("quotes") << u"/a\"b"_s << true << u"/a&quot;b"_s << wanted;
    QTest::newRow("place markers")
        << u"/%1 %2 %3 %%"_s << false << u"/%1 %2 %3 %%"_s << u"(none)"_s;
    QTest::newRow("token") << u"/@INS_TX"_s << false << u"/@INS_TX"_s << u"(none)"_s;
}

void TestReadyPage::summary()
{
    QFETCH(QString, path);
    QFETCH(bool, shortcut);
    QFETCH(QString, pathText);
    QFETCH(QString, taskText);
    ReadyPage page;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        page.setSummary(path, shortcut);
        QCOMPARE(summaryOf(page)->text(), summaryText(pathText, taskText));
        QCOMPARE(shownText(summaryOf(page)),
                 u"Destination location:\n"_s + path + u"\n\nAdditional tasks:\n"_s + taskText);
    }
}

void TestReadyPage::summaryKeepsTheColourOfItsMoment()
{
    ReadyPage page;
    page.setSummary(u"/opt"_s, false);
    const QString light = summaryOf(page)->text();
    QCOMPARE(light, summaryText(u"/opt"_s, u"(none)"_s));
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(summaryOf(page)->text(), light);
    page.setSummary(u"/opt"_s, false);
    QCOMPARE(summaryOf(page)->text(), summaryText(u"/opt"_s, u"(none)"_s));
    QCOMPARE_NE(summaryOf(page)->text(), light);
}

void TestReadyPage::fits_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("usual") << uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("one long word") << u"/"_s + longWord();
}

void TestReadyPage::fits()
{
    QFETCH(QString, path);
    ReadyPage page;
    page.setSummary(path, true);
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestReadyPage)
#include "tst_readypage.moc"
