// What the painted widgets have in common.

#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/gifbadge.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/revealrow.h"
#include "widgets/sealcheck.h"
#include "widgets/togglecheckbox.h"

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

QWidget *newRadioOption(QWidget *parent)
{
    return new RadioOption(u"A"_s, parent);
}
QWidget *newCheckBox(QWidget *parent)
{
    return new ToggleCheckbox(u"A"_s, parent);
}
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

} // namespace

class TestPaintedWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarningsInLightTheme(); }
    void repaints_data();
    void repaints();
    void decorationLetsClicksThrough();
};

void TestPaintedWidgets::repaints_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QByteArrayList>("properties");
    const auto add = [](const char *name, const Maker &maker, const QByteArrayList &properties) {
        QTest::newRow(name) << maker << properties;
    };
    add("row", make<Row>, { "reveal" });
    add("radio option", newRadioOption, { "hoverProgress", "selectProgress" });
    add("check box", newCheckBox, { "hoverProgress", "checkProgress" });
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

QTEST_MAIN(TestPaintedWidgets)
#include "tst_paintedwidgets.moc"
