#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagelabels.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "theme/fonts.h"
#include "theme/thememanager.h"

#include <QFontInfo>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPageLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void builders_data();
    void builders();
    void followTheTheme_data() { builders_data(); }
    void followTheTheme();
    void showTextLiterally_data() { builders_data(); }
    void showTextLiterally();
    void bodyTakesThePagesFamily();
    void pageLayoutHasNoGapsOfItsOwn();
    void head();
    void finishPage();
    void labelsOutliveNoTheme();
    void fontsAreTheOnesBroughtAlong_data();
    void fontsAreTheOnesBroughtAlong();
};

using Builder = QLabel *(*)(const QString &, QWidget *);

void TestPageLabels::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestPageLabels::builders_data()
{
    QTest::addColumn<Builder>("build");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("weight");
    QTest::addColumn<bool>("wordWrap");
    QTest::addColumn<QString>("token");
    const QString pageFamily = QWidget().font().family();
    QTest::newRow("title") << Builder(pageTitleLabel) << u"Space Grotesk"_s << 18 << 600 << true
                           << u"@INS_TX"_s;
    QTest::newRow("body") << Builder(pageBodyLabel) << pageFamily << 12 << 400 << true
                          << u"@INS_TX2"_s;
    QTest::newRow("caption") << Builder(pageCaptionLabel) << u"JetBrains Mono"_s << 10 << 400
                             << false << u"@INS_TX3"_s;
}

void TestPageLabels::builders()
{
    QFETCH(Builder, build);
    QWidget page;
    QLabel *label = build(u"Some text"_s, &page);
    QCOMPARE(label->parentWidget(), &page);
    QCOMPARE(label->text(), u"Some text"_s);
    QTEST(label->font().family(), "family");
    QTEST(label->font().pixelSize(), "pixelSize");
    QTEST(int(label->font().weight()), "weight");
    QTEST(label->wordWrap(), "wordWrap");
}

void TestPageLabels::followTheTheme()
{
    QFETCH(Builder, build);
    QFETCH(QString, token);
    QWidget page;
    QLabel *label = build(u"Some text"_s, &page);
    for (bool dark : { false, true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(label->styleSheet(), coloured(u"color:%1;"_s, { token }));
        label->ensurePolished();
        QCOMPARE(label->palette().color(label->foregroundRole()),
                 QColor(ThemeManager::instance().color(token)));
    }
}

void TestPageLabels::showTextLiterally()
{
    QFETCH(Builder, build);
    QWidget page;
    QLabel *label = build(kLiteral, &page);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(shownText(label), kLiteral);
}

void TestPageLabels::bodyTakesThePagesFamily()
{
    QWidget page;
    page.setFont(QFont(u"JetBrains Mono"_s, 30));
    QLabel *body = pageBodyLabel(u"Some text"_s, &page);
    QCOMPARE(body->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(body->font().pixelSize(), 12);
}

void TestPageLabels::pageLayoutHasNoGapsOfItsOwn()
{
    QWidget page;
    QVBoxLayout *layout = pageLayout(&page);
    QCOMPARE(page.layout(), layout);
    QCOMPARE(layoutOutline(&page), QStringList { u"margins 22 18 22 18, spacing 0"_s });
}

void TestPageLabels::head()
{
    QWidget page;
    QLabel *body = addPageHead(pageLayout(&page), u"A title"_s, u"Two\nlines"_s);
    QCOMPARE(body->text(), u"Two\nlines"_s);
    QCOMPARE(layoutOutline(&page),
             (QStringList { u"margins 22 18 22 18, spacing 0"_s, u"label: A title"_s, u"gap 5"_s,
                            u"label: Two\nlines"_s }));
}

void TestPageLabels::finishPage()
{
    class Emblem : public QWidget
    {
    public:
        using QWidget::QWidget;
        QSize sizeHint() const override { return { 46, 40 }; }
    };
    QWidget page;
    auto *emblem = new Emblem(&page);
    QLabel *body = layOutFinishPage(&page, emblem, u"A title"_s);
    QVERIFY(body->text().isEmpty());
    QCOMPARE(layoutOutline(&page),
             (QStringList { u"margins 22 18 22 18, spacing 0"_s, u"QWidget, left"_s, u"gap 14"_s,
                            u"label: A title"_s, u"gap 5"_s, u"label: "_s, u"stretch"_s }));
    page.resize(kPageSize);
    page.layout()->activate();
    QCOMPARE(emblem->geometry(), QRect(22, 18, 46, 40));
}

// A theme change after the page is gone must not reach its labels.
void TestPageLabels::labelsOutliveNoTheme()
{
    auto *page = new QWidget;
    pageTitleLabel(u"A title"_s, page);
    pageCaptionLabel(u"Small print"_s, page);
    delete page;
    ThemeManager::instance().setDarkMode(true);
}

void TestPageLabels::fontsAreTheOnesBroughtAlong_data()
{
    QTest::addColumn<QFont>("font");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("weight");
    QTest::newRow("monospaced") << monospacedFont(11) << u"JetBrains Mono"_s << 11 << 400;
    QTest::newRow("display, semi-bold")
        << displayFont(18, QFont::DemiBold) << u"Space Grotesk"_s << 18 << 600;
    QTest::newRow("display, bold")
        << displayFont(14, QFont::Bold) << u"Space Grotesk"_s << 14 << 700;
}

void TestPageLabels::fontsAreTheOnesBroughtAlong()
{
    QFETCH(QFont, font);
    const QFontInfo used(font);
    QTEST(used.family(), "family");
    QTEST(used.pixelSize(), "pixelSize");
    QTEST(used.weight(), "weight");
}

QTEST_MAIN(TestPageLabels)
#include "tst_pagelabels.moc"
