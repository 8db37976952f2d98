// What the painted widgets have in common, and the lines between them.

#include "pages/lightthemetest.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/gifbadge.h"
#include "widgets/hairline.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/revealrow.h"
#include "widgets/sealcheck.h"
#include "widgets/togglecheckbox.h"

#include <QPainter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Maker = std::function<QWidget *(QWidget *parent)>;

class Row : public RevealRow
{
public:
    explicit Row(QWidget *parent) : RevealRow(6, u"A row"_s, parent) {}

protected:
    void paintRow(QPainter &) override {}
};

/// Without a movie, whose frames would repaint it too.
QWidget *newBadge(QWidget *parent)
{
    return new GifBadge(u":/assets/nothing.gif"_s, 64, parent);
}
template <typename Widget>
QWidget *make(QWidget *parent)
{
    return new Widget(parent);
}
template <typename Control>
QWidget *makeWithText(QWidget *parent)
{
    return new Control(u"A"_s, parent);
}

} // namespace

class TestPaintedWidgets : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void repaints_data();
    void repaints();
    void decorationLetsClicksThrough();
    void hairlineKeepsToItsEdge_data();
    void hairlineKeepsToItsEdge();
};

void TestPaintedWidgets::repaints_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QByteArrayList>("properties");
    const auto add = [](const char *name, const Maker &maker, const QByteArrayList &properties) {
        QTest::newRow(name) << maker << properties;
    };
    add("row", make<Row>, { "reveal" });
    add("radio option", makeWithText<RadioOption>, { "hoverProgress", "selectProgress" });
    add("check box", makeWithText<ToggleCheckbox>, { "hoverProgress", "checkProgress" });
    add("progress track", make<ProgressTrack>, { "value", "indeterminatePhase" });
    add("seal", make<SealCheck>, { "circleProgress", "checkProgress" });
    add("badge", newBadge, { "popProgress" });
    add("mark", make<AnimatedMark>,
        { "a1Progress", "a2Progress", "a3Progress", "a4Progress", "driftOffset" });
}

// With each frame of an animation, and in a new theme.
void TestPaintedWidgets::repaints()
{
    QFETCH(const Maker, maker);
    QFETCH(const QByteArrayList, properties);
    const std::unique_ptr<QWidget> widget(maker(nullptr));
    PaintWatch watch(*widget);
    for (const QByteArray &property : properties) {
        QVERIFY(widget->setProperty(property, 0.5));
        QCOMPARE(widget->property(property).toDouble(), 0.5);
        QVERIFY2(watch.seesRepaint(), property.constData());
    }
    // What is painted says nothing about what is chosen.
    if (auto *button = qobject_cast<QAbstractButton *>(widget.get()))
        QVERIFY(!button->isChecked());
    if (auto *row = qobject_cast<RevealRow *>(widget.get()))
        QVERIFY(!row->isRevealed());
    if (qobject_cast<AnimatedMark *>(widget.get()))
        return; // it has colours of its own
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(watch.seesRepaint());
}

void TestPaintedWidgets::decorationLetsClicksThrough()
{
    QWidget parent;
    const Maker makers[] { make<AnimatedMark>, make<ProgressTrack>, make<SealCheck>, newBadge };
    for (const Maker &maker : makers)
        maker(&parent)->setGeometry(0, 0, 64, 64);
    QCOMPARE(parent.childAt(32, 32), nullptr);
}

void TestPaintedWidgets::hairlineKeepsToItsEdge_data()
{
    QTest::addColumn<double>("ratio");
    for (double ratio : kScreenRatios)
        QTest::addRow("ratio %g", ratio) << ratio;
}

// Wherever the edge comes to lie, there is nothing between it and the line, which is equally thick
// everywhere, as long as the edge, and of its colour alone.
void TestPaintedWidgets::hairlineKeepsToItsEdge()
{
    QFETCH(const double, ratio);
    for (Qt::Edge edge : { Qt::TopEdge, Qt::BottomEdge, Qt::LeftEdge, Qt::RightEdge }) {
        for (int place = 1; place < 17; ++place) {
            const bool antialiased = place % 2 == 0;
            QImage picture((QSizeF(48, 48) * ratio).toSize(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(ratio);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            const QRect rect(place, place, 26, 26);
            painter.fillRect(rect, Qt::black);
            const QRectF ground = inkRect(picture, Qt::black);
            painter.setRenderHint(QPainter::Antialiasing, antialiased);
            paintHairline(painter, rect, edge, Qt::red);
            QCOMPARE(painter.testRenderHint(QPainter::Antialiasing), antialiased);
            painter.end();

            const QImage inside =
                picture.copy(QRectF(ground.topLeft() * ratio, ground.size() * ratio).toRect());
            QVERIFY2(hasHairline(inside, edge, Qt::red),
                     qPrintable(u"edge %1 at %2"_s.arg(edge).arg(place)));
            QCOMPARE(pixelsUnlike(inside, Qt::black), int(ratio) * inside.width());
            QCOMPARE(pixelsUnlike(picture, Qt::white), inside.width() * inside.height());
        }
    }
}

QTEST_MAIN(TestPaintedWidgets)
#include "tst_paintedwidgets.moc"
