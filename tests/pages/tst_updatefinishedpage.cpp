#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/updatefinishedpage.h"
#include "theme/thememanager.h"
#include "widgets/sealcheck.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestUpdateFinishedPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void itemsFromTopToBottom();
    void version_data();
    void version();
    void sealIsStillAtFirst();
    void fits();
};

void TestUpdateFinishedPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestUpdateFinishedPage::itemsFromTopToBottom()
{
    UpdateFinishedPage page;
    const QStringList outline = layoutOutline(&page);
    QCOMPARE(outline.first(), u"margins 22 18 22 18, spacing 0"_s);
    QCOMPARE(outline.last(), u"stretch"_s);
    const QList<QWidget *> widgets = layoutWidgets(page.layout());
    QCOMPARE(widgets.size(), 3);
    QCOMPARE(widgets[0], page.seal());
    QCOMPARE(qobject_cast<QLabel *>(widgets[1])->text(), u"Varnel Schematics has been updated"_s);
    QCOMPARE(qobject_cast<QLabel *>(widgets[2])->text(),
             u"Now running version 1.6.9.\nYour settings were preserved."_s);
    QCOMPARE(widgets[1]->font().pixelSize(), 18);
    QCOMPARE(widgets[2]->font().pixelSize(), 12);
}

void TestUpdateFinishedPage::version_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("usual") << u"2.0.1"_s;
    QTest::newRow("markup") << kLiteral;
    QTest::newRow("empty") << QString();
}

void TestUpdateFinishedPage::version()
{
    QFETCH(QString, version);
    UpdateFinishedPage page;
    page.setVersion(version);
    const auto *body = page.findChildren<QLabel *>().last();
    QCOMPARE(shownText(body),
             u"Now running version "_s + version + u".\nYour settings were preserved.");
    QCOMPARE(body->textFormat(), Qt::PlainText);
}

void TestUpdateFinishedPage::sealIsStillAtFirst()
{
    UpdateFinishedPage page;
    QCOMPARE(page.seal()->circleProgress(), 0.0);
    QCOMPARE(page.seal()->size(), QSize(46, 46));
}

void TestUpdateFinishedPage::fits()
{
    UpdateFinishedPage page;
    page.setVersion(longWord());
    QVERIFY(fitsWindow(&page));
    QStringList lines = shownLines(*page.findChildren<QLabel *>().last());
    QCOMPARE(lines.takeLast(), u"Your settings were preserved."_s);
    QCOMPARE(lines.takeFirst().trimmed(), u"Now running version"_s);
    QCOMPARE(lines.join(QString()), longWord() + u'.');
}

QTEST_MAIN(TestUpdateFinishedPage)
#include "tst_updatefinishedpage.moc"
