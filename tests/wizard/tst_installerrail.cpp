#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/paintwatch.h"
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

/// Where the mark stands in the rail, which its widget reaches beyond.
QRect placeOfMark(const InstallerRail &rail)
{
    return rail.mark()->contentsRect().translated(rail.mark()->pos());
}

void bringIn(AnimatedMark &mark, double progress)
{
    mark.setA1Progress(progress);
    mark.setA2Progress(progress);
    mark.setA3Progress(progress);
    mark.setA4Progress(progress);
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
    void markRestsAsItWouldAlone_data();
    void markRestsAsItWouldAlone();
    void partsComeInFromTheEdges_data();
    void partsComeInFromTheEdges();
    void onlyThePlaceOfTheMarkIsDrawnAnew();
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
    QCOMPARE(placeOfMark(rail).size(), QSize(136, 110));
    QCOMPARE(placeOfMark(rail).x(), 30);
    QCOMPARE(rail.mark()->geometry(), QRect(0, placeOfMark(rail).y(), 195, 110));
}

void TestInstallerRail::markRestsAsItWouldAlone_data()
{
    QTest::addColumn<double>("ratio");
    for (double ratio : { 1.0, 1.25, 1.5, 2.0 })
        QTest::addRow("ratio %g", ratio) << ratio;
}

// Its picture is that of a mark which is no wider than its place.
void TestInstallerRail::markRestsAsItWouldAlone()
{
    QFETCH(double, ratio);
    InstallerRail rail;
    rail.resize(kSize);
    rail.layout()->activate();
    QWidget ground;
    ground.resize(kSize);
    ground.setPalette(themedColor(u"@INS_RAIL"_s));
    ground.setAutoFillBackground(true);
    auto *alone = new AnimatedMark(&ground);
    alone->setGeometry(placeOfMark(rail));
    const QRect band(0, int(alone->y() * ratio), int(195 * ratio), int(110 * ratio));
    for (double fill : { 1.0, 0.4, 0.0 }) {
        for (double drift : { 0.0, -1.3 }) {
            for (AnimatedMark *mark : { rail.mark(), alone }) {
                bringIn(*mark, 1.0);
                mark->setFill(fill);
                mark->setDriftOffset(drift);
            }
            const QImage expected = grabWidget(ground, ratio).copy(band);
            QVERIFY(pixelsUnlike(expected, themedColor(u"@INS_RAIL"_s)) > 1000);
            QVERIFY(grabWidget(rail, ratio).copy(band) == expected);
        }
    }
}

void TestInstallerRail::partsComeInFromTheEdges_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    // The chevrons are 37 px wide, rest 32 px from the edges and have 90 px to go.
    QTest::newRow("at the edges") << 0.3 << 5 << 191;
    QTest::newRow("half inside the place of the mark") << 0.6 << 29 << 166;
}

void TestInstallerRail::partsComeInFromTheEdges()
{
    QFETCH(double, progress);
    QFETCH(int, left);
    QFETCH(int, right);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        InstallerRail rail;
        rail.resize(kSize);
        rail.layout()->activate();
        bringIn(*rail.mark(), 0.0);
        const QImage empty = grabWidget(rail);
        rail.mark()->setA1Progress(progress);
        rail.mark()->setA2Progress(progress);
        const QImage picture = grabWidget(rail);
        for (int x = 0; x < kSize.width(); ++x) {
            const QRect column(x, 0, 1, kSize.height());
            const bool isDrawn = picture.copy(column) != empty.copy(column);
            const bool mayBeDrawn = x < left + 6 || (x > right - 6 && x < 195);
            const bool mustBeDrawn = x <= left || (x >= right && x < 195);
            QVERIFY2(isDrawn ? mayBeDrawn : !mustBeDrawn, qPrintable(QString::number(x)));
        }
    }
}

// All of the mark's width only while something is on its way there.
void TestInstallerRail::onlyThePlaceOfTheMarkIsDrawnAnew()
{
    InstallerRail rail;
    rail.show();
    bringIn(*rail.mark(), 1.0);
    PaintWatch watch(*rail.mark());
    const QRect place = rail.mark()->contentsRect();
    rail.mark()->setFill(0.5);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(place));
    rail.mark()->setDriftOffset(-2.0);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(place));
    rail.mark()->setA1Progress(0.5);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(rail.mark()->rect()));
    rail.mark()->setDriftOffset(-1.0);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(rail.mark()->rect()));
    rail.mark()->setA1Progress(1.0);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(rail.mark()->rect()));
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
    for (double anyRatio : kScreenRatios)
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
