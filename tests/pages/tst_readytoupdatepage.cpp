#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/readytoupdatepage.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kDefaultFolder = uR"(C:\Program Files\Varnel Schematics)"_s;

QLabel *bodyOf(const ReadyToUpdatePage &page)
{
    return page.findChildren<QLabel *>().at(1);
}

QLabel *summaryOf(const ReadyToUpdatePage &page)
{
    return page.findChildren<QLabel *>().last();
}

QString summaryText(const QString &folder)
{
    return coloured(u"<span style=\"color:%1;font-weight:600;\">Destination location:</span><br>"_s,
                    { u"@INS_TX"_s })
        + folder + u"<br><br>Your preferences and license will be kept.";
}

} // namespace

class TestReadyToUpdatePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void defaults();
    void details_data();
    void details();
    void emptyFolderKeepsTheOneBefore();
    void followsTheTheme();
    void fits_data();
    void fits();
};

void TestReadyToUpdatePage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestReadyToUpdatePage::layout()
{
    ReadyToUpdatePage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Ready to Update"_s,
                 u"gap 5"_s,
                 u"label: Setup will update Varnel Schematics to version 1.6.9."_s,
                 u"gap 18"_s,
                 u"label: "_s + summaryText(kDefaultFolder),
                 u"stretch"_s,
             }));
}

void TestReadyToUpdatePage::defaults()
{
    ReadyToUpdatePage page;
    QCOMPARE(bodyOf(page)->text(), u"Setup will update Varnel Schematics to version 1.6.9."_s);
    QCOMPARE(summaryOf(page)->text(), summaryText(kDefaultFolder));
}

void TestReadyToUpdatePage::details_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("folderText");
    QTest::newRow("usual") << u"2.0"_s << uR"(D:\Tools)"_s << uR"(D:\Tools)"_s;
    QTest::newRow("markup") << u"a&b <i>%2 %1</i>"_s << u"/a&b <i>%2 %1</i>"_s
                            << u"/a&amp;b &lt;i&gt;%2 %1&lt;/i&gt;"_s;
    QTest::newRow("no version") << QString() << u"/opt"_s << u"/opt"_s;
}

void TestReadyToUpdatePage::details()
{
    QFETCH(QString, version);
    QFETCH(QString, folder);
    QFETCH(QString, folderText);
    ReadyToUpdatePage page;
    page.setDetails(version, folder);
    QCOMPARE(bodyOf(page)->textFormat(), Qt::PlainText);
    QCOMPARE(bodyOf(page)->text(),
             u"Setup will update Varnel Schematics to version "_s + version + u'.');
    QCOMPARE(summaryOf(page)->text(), summaryText(folderText));
    QCOMPARE(shownText(summaryOf(page)),
             u"Destination location:\n"_s + folder
                 + u"\n\nYour preferences and license will be kept.");
}

void TestReadyToUpdatePage::emptyFolderKeepsTheOneBefore()
{
    ReadyToUpdatePage page;
    page.setDetails(u"1.7.0"_s, {});
    QCOMPARE(summaryOf(page)->text(), summaryText(kDefaultFolder));
    QCOMPARE(bodyOf(page)->text(), u"Setup will update Varnel Schematics to version 1.7.0."_s);
    page.setDetails(u"1.7.0"_s, u"/opt/varnel"_s);
    page.setDetails(u"1.8.0"_s, {});
    QCOMPARE(summaryOf(page)->text(), summaryText(u"/opt/varnel"_s));
    QCOMPARE(bodyOf(page)->text(), u"Setup will update Varnel Schematics to version 1.8.0."_s);
}

void TestReadyToUpdatePage::followsTheTheme()
{
    ReadyToUpdatePage page;
    page.setDetails(u"2.0"_s, u"/opt"_s);
    for (bool dark : { true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(summaryOf(page)->styleSheet(),
                 coloured(u"background:%1;border:1px solid %2;border-radius:8px;"
                          "padding:12px 13px;color:%3;"_s,
                          { u"@INS_PANEL"_s, u"@INS_LINE"_s, u"@INS_TX2"_s }));
        QCOMPARE(summaryOf(page)->text(), summaryText(u"/opt"_s));
        QCOMPARE(bodyOf(page)->text(), u"Setup will update Varnel Schematics to version 2.0."_s);
    }
}

void TestReadyToUpdatePage::fits_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("usual") << u"/opt"_s;
    QTest::newRow("one long word") << longWord();
}

void TestReadyToUpdatePage::fits()
{
    QFETCH(QString, text);
    ReadyToUpdatePage page;
    page.setDetails(text, text);
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestReadyToUpdatePage)
#include "tst_readytoupdatepage.moc"
