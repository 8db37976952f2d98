#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "wizard/installerrail.h"
#include "wizard/onscreen.h"

#include <QLabel>
#include <QLayout>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kSize(196, 390);

struct Labels
{
    explicit Labels(const InstallerRail &rail)
    {
        const QList<QLabel *> labels = rail.findChildren<QLabel *>();
        if (labels.size() != 3)
            qFatal("The rail has three labels");
        wordmark = labels[0];
        version = labels[1];
        legal = labels[2];
    }

    QLabel *wordmark;
    QLabel *version;
    QLabel *legal;
};

QString wordmarkText()
{
    return coloured(u"<span style=\"color:%1;\">Varnel</span> "
                    "<span style=\"color:%2;\">Schematics</span>"_s,
                    { u"@INS_ACCENT"_s, u"@INS_TX"_s });
}

} // namespace

class TestInstallerRail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void texts();
    void fonts();
    void followsTheTheme();
    void markIsInTheMiddle();
    void everythingFits();
    void painting_data();
    void painting();
    void themeChangeRepaints();
};

void TestInstallerRail::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerRail::layout()
{
    InstallerRail rail;
    QCOMPARE(rail.minimumWidth(), 196);
    QCOMPARE(rail.maximumWidth(), 196);
    QCOMPARE(layoutOutline(&rail),
             (QStringList {
                 u"margins 20 20 20 20, spacing 0"_s,
                 u"stretch"_s,
                 u"column, spacing 0"_s,
                 u"  AnimatedMark, centred"_s,
                 u"  gap 14"_s,
                 u"  label: "_s + wordmarkText(),
                 u"  gap 5"_s,
                 u"  label: 1.6.9 · 220 MB"_s,
                 u"stretch"_s,
                 u"label: © 2026 Varnel Solutions Team<br>Proprietary and confidential"_s,
             }));
}

void TestInstallerRail::texts()
{
    InstallerRail rail;
    const Labels labels(rail);
    QCOMPARE(labels.wordmark->textFormat(), Qt::RichText);
    QCOMPARE(shownText(labels.wordmark), u"Varnel Schematics"_s);
    QCOMPARE(labels.version->text(), u"1.6.9 · 220 MB"_s);
    QCOMPARE(labels.legal->textFormat(), Qt::RichText);
    QCOMPARE(shownText(labels.legal),
             u"© 2026 Varnel Solutions Team\nProprietary and confidential"_s);
    QVERIFY(labels.legal->wordWrap());
    for (const QLabel *label : { labels.wordmark, labels.version, labels.legal })
        QCOMPARE(label->alignment(), Qt::AlignCenter);
}

void TestInstallerRail::fonts()
{
    InstallerRail rail;
    rail.show();
    const Labels labels(rail);
    QCOMPARE(labels.wordmark->font().family(), u"Space Grotesk"_s);
    QCOMPARE(int(labels.wordmark->font().weight()), 700);
    QCOMPARE(labels.wordmark->font().pixelSize(), 14);
    QCOMPARE(labels.version->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(labels.version->font().pixelSize(), 10);
    QCOMPARE(labels.legal->font().pixelSize(), 10);
}

void TestInstallerRail::followsTheTheme()
{
    InstallerRail rail;
    const Labels labels(rail);
    for (bool dark : { false, true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(labels.wordmark->text(), wordmarkText());
        QCOMPARE(labels.version->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
        QCOMPARE(labels.legal->styleSheet(),
                 coloured(u"color:%1;font-size:10px;"_s, { u"@INS_TX3"_s }));
    }
}

void TestInstallerRail::markIsInTheMiddle()
{
    InstallerRail rail;
    QCOMPARE(rail.findChild<AnimatedMark *>(), rail.mark());
    rail.resize(kSize);
    rail.layout()->activate();
    QCOMPARE(rail.mark()->size(), QSize(136, 110));
    QCOMPARE(rail.mark()->x(), 30);
}

// No word of the labels is cut off at the rail's edges.
void TestInstallerRail::everythingFits()
{
    InstallerRail rail;
    rail.resize(kSize);
    rail.show();
    for (const QLabel *label : rail.findChildren<QLabel *>()) {
        QVERIFY(QRect(20, 20, 156, 350).contains(label->geometry()));
        QVERIFY2(label->minimumSizeHint().width() <= label->width(), qPrintable(label->text()));
        const int height =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        QVERIFY2(height <= label->height(), qPrintable(label->text()));
    }
}

void TestInstallerRail::painting_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (double ratio : { 1.0, 2.0 }) {
        QTest::addRow("light, ratio %g", ratio) << false << ratio;
        QTest::addRow("dark, ratio %g", ratio) << true << ratio;
    }
}

void TestInstallerRail::painting()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    InstallerRail rail;
    rail.resize(kSize);
    const QImage picture = grabWidget(rail, ratio);
    for (double y : { 0.3, 50.0, kSize.height() - 0.6 }) {
        QCOMPARE(colourAt(picture, { 0.3, y }), themedColor(u"@INS_RAIL"_s));
        QCOMPARE(colourAt(picture, { 194.6, y }), themedColor(u"@INS_RAIL"_s));
    }
    for (double anyRatio : kRatios)
        QVERIFY(
            hasHairline(grabWidget(rail, anyRatio), Qt::RightEdge, themedColor(u"@INS_LINE"_s)));
}

void TestInstallerRail::themeChangeRepaints()
{
    InstallerRail rail;
    rail.resize(kSize);
    QVERIFY(repaintsOnThemeChange(rail, { 5, 5 }, u"@INS_RAIL"_s));
}

QTEST_MAIN(TestInstallerRail)
#include "tst_installerrail.moc"
