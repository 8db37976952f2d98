#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "widgets/selectionkinds.h"

#include <QPainter>

#include <cmath>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kSize(200, 40);

} // namespace

class TestSelectionControlPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void plate_data() { addSelectionKinds(); }
    void plate();
    void plateThreshold_data() { addSelectionKinds(); }
    void plateThreshold();
    void plateCorners_data() { addSelectionKinds(); }
    void plateCorners();
    void text_data() { addSelectionKinds(); }
    void text();
    void textIsInTheMiddle_data() { addSelectionKinds(); }
    void textIsInTheMiddle();
    void longTextIsCut_data() { addSelectionKinds(); }
    void longTextIsCut();
};

void TestSelectionControlPainting::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestSelectionControlPainting::plate()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u""_s));
    control->resize(kSize);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (double ratio : { 1.0, 2.0 }) {
            for (double progress : { 0.25, 0.5, 1.0 }) {
                control->setHoverProgress(progress);
                const QImage picture = grabWidget(*control, ratio);
                const QColor panel = faded(themedColor(u"@INS_PANEL"_s), progress);
                QCOMPARE(difference(colourAt(picture, { 198, 20 }), panel), QString());
                QCOMPARE(difference(colourAt(picture, { 1, 20 }), panel), QString());
                QCOMPARE(difference(colourAt(picture, { 100, 0.25 }), panel), QString());
                QCOMPARE(difference(colourAt(picture, { 100, 39.75 }), panel), QString());
            }
            control->setHoverProgress(0.0);
            QCOMPARE(colourAt(grabWidget(*control, ratio), { 100, 20 }).alpha(), 0);
        }
    }
}

void TestSelectionControlPainting::plateThreshold()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u""_s));
    control->resize(kSize);
    const QImage bare = grabWidget(*control);
    control->setHoverProgress(0.001);
    QCOMPARE(grabWidget(*control), bare);
    control->setHoverProgress(0.01);
    QVERIFY(grabWidget(*control) != bare);
}

void TestSelectionControlPainting::plateCorners()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u""_s));
    control->resize(kSize);
    control->setHoverProgress(1.0);
    // Four corners of radius 8 leave out this much, and one of 7.8 or 8.2 would not.
    const double leftOut = (4.0 - M_PI) * 8.0 * 8.0;
    const double area = kSize.width() * kSize.height() - leftOut;
    QVERIFY(std::abs(paintedArea(grabWidget(*control, 4.0)) - area) < 2.0);
}

void TestSelectionControlPainting::text()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u"████████"_s));
    control->resize(kSize);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (double ratio : { 1.0, 2.0 }) {
            for (double hover : { 0.0, 1.0 }) {
                control->setHoverProgress(hover);
                const QImage picture = grabWidget(*control, ratio);
                QCOMPARE(difference(colourAt(picture, { 45, 20 }), themedColor(u"@INS_TX"_s)),
                         QString());
            }
        }
    }
}

void TestSelectionControlPainting::textIsInTheMiddle()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u"A label"_s));
    for (int pixels : { 9, 13, 20 }) {
        QFont font = control->font();
        font.setPixelSize(pixels);
        font.setBold(pixels == 20);
        control->setFont(font);
        for (int height : { 29, 30, 60 }) {
            control->resize(kSize.width(), height);
            const QImage picture = grabWidget(*control);
            QImage expected(control->size(), QImage::Format_ARGB32_Premultiplied);
            expected.fill(Qt::transparent);
            QPainter painter(&expected);
            painter.setPen(themedColor(u"@INS_TX"_s));
            painter.setFont(font);
            painter.drawText(QRect(35, 0, kSize.width() - 44, height),
                             Qt::AlignLeft | Qt::AlignVCenter, u"A label"_s);
            painter.end();
            const QRect besideIndicator(30, 0, kSize.width() - 30, height);
            QCOMPARE(picture.copy(besideIndicator), expected.copy(besideIndicator));
        }
    }
}

void TestSelectionControlPainting::longTextIsCut()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(QString(60, u'█')));
    control->resize(kSize);
    const QImage picture = grabWidget(*control, 2.0);
    const QRectF ink = inkRect(picture.copy(2 * 30, 0, 2 * 170, 2 * 40)).translated(30, 0);
    QCOMPARE(ink.left(), 35.0);
    QCOMPARE(ink.right(), kSize.width() - 9.0);
}

QTEST_MAIN(TestSelectionControlPainting)
#include "tst_selectioncontrol_painting.moc"
