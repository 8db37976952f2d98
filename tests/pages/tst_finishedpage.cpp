#include "app/applicationfonts.h"
#include "pages/finishedpage.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/drawing.h"
#include "theme/thememanager.h"
#include "widgets/sealcheck.h"

#include <QLabel>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

class TestFinishedPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void sealIsStillAtFirst();
    void result_data();
    void result();
    void resultIsReplaced();
    void longFolderIsShownWhole_data();
    void longFolderIsShownWhole();
    void fits();
};

void TestFinishedPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestFinishedPage::layout()
{
    FinishedPage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"SealCheck, left"_s,
                 u"gap 14"_s,
                 u"label: Varnel Schematics is installed"_s,
                 u"gap 5"_s,
                 u"label: "_s,
                 u"stretch"_s,
             }));
    page.resize(kPageSize);
    page.layout()->activate();
    QCOMPARE(page.seal()->geometry(), QRect(22, 18, 46, 46));
}

void TestFinishedPage::sealIsStillAtFirst()
{
    FinishedPage page;
    QCOMPARE(page.findChild<SealCheck *>(), page.seal());
    QCOMPARE(page.seal()->circleProgress(), 0.0);
    QCOMPARE(page.seal()->checkProgress(), 0.0);
}

void TestFinishedPage::result_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("shortcut");
    QTest::addColumn<QString>("text");
    const QString usual = uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("no shortcut") << usual << false << u"Installed to "_s + usual + u"."_s;
    QTest::newRow("with a shortcut")
        << usual << true << u"Installed to "_s + usual + u".\nA shortcut is on your desktop."_s;
    QTest::newRow("markup") << kLiteral << true
                            << u"Installed to "_s + kLiteral
            + u".\nA shortcut is on your desktop."_s;
    QTest::newRow("blanks at its ends are kept")
        << u" /opt/a  "_s << false << u"Installed to  /opt/a  ."_s;
}

void TestFinishedPage::result()
{
    QFETCH(QString, path);
    QFETCH(bool, shortcut);
    FinishedPage page;
    page.setResult(path, shortcut);
    const auto *body = page.findChildren<QLabel *>().last();
    QCOMPARE(body->textFormat(), Qt::PlainText);
    QTEST(body->text(), "text");
}

void TestFinishedPage::resultIsReplaced()
{
    FinishedPage page;
    page.setResult(u"/one"_s, true);
    page.setResult(u"/two"_s, false);
    QCOMPARE(page.findChildren<QLabel *>().last()->text(), u"Installed to /two."_s);
}

void TestFinishedPage::longFolderIsShownWhole_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("one word") << longWord();
    QTest::newRow("folders") << u"C:\\"_s + u"firstname.lastname\\"_s.repeated(12)
            + u"Varnel-x64"_s;
    QTest::newRow("blanks") << u"C:\\"_s + u"one  two\\"_s.repeated(20) + u"Varnel-x64"_s;
}

void TestFinishedPage::longFolderIsShownWhole()
{
    QFETCH(QString, path);
    FinishedPage page;
    page.setResult(path, true);
    QVERIFY(fitsWindow(&page));
    auto *body = page.findChildren<QLabel *>().last();
    QStringList lines = shownLines(*body);
    QVERIFY(lines.size() > 3);
    QCOMPARE(lines.takeLast(), u"A shortcut is on your desktop."_s);
    QCOMPARE(lines.join(QString()).remove(u' '),
             QString(u"Installed to "_s + path + u'.').remove(u' '));
    QCOMPARE(toolTipOf(*body), QString());
    // Right below the title, as a short text is.
    const double firstLine = draw(*body, 1.0).texts.first().baseline.y();
    page.setResult(u"/opt"_s, true);
    QVERIFY(fitsWindow(&page));
    QVERIFY(std::abs(draw(*body, 1.0).texts.first().baseline.y() - firstLine) < 1.5);
}

void TestFinishedPage::fits()
{
    FinishedPage page;
    page.setResult(u"/"_s + longWord(), true);
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestFinishedPage)
#include "tst_finishedpage.moc"
