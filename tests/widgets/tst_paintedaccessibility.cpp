#include "pages/strictwarnings.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/gifbadge.h"
#include "widgets/paintedaccessibility.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/revealrow.h"
#include "widgets/sealcheck.h"
#include "widgets/themedbutton.h"
#include "widgets/togglecheckbox.h"

#include <QAccessible>
#include <QButtonGroup>
#include <QLabel>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

class Row : public RevealRow
{
public:
    using RevealRow::RevealRow;

protected:
    void paintRow(QPainter &) override {}
};

QAccessibleInterface &interfaceOf(QObject &object)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&object);
    Q_ASSERT(interface);
    return *interface;
}

QString nameOf(QObject &object)
{
    return interfaceOf(object).text(QAccessible::Name);
}

} // namespace

class TestPaintedAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installPaintedAccessibility(); }
    void init() { failOnWarnings(); }
    void decoration_data();
    void decoration();
    void row();
    void rowInAHiddenWindow();
    void track();
    void trackTellsTheTarget_data();
    void trackTellsTheTarget();
    void trackIsReadOnly();
    void radioOption();
    void radioOptionsOfAGroup();
    void checkBox();
    void button();
    void everythingElseIsAsItWas();
};

void TestPaintedAccessibility::decoration_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("mark") << 0;
    QTest::newRow("badge") << 1;
    QTest::newRow("seal") << 2;
}

void TestPaintedAccessibility::decoration()
{
    QFETCH(const int, kind);
    QWidget window;
    QWidget *widget = nullptr;
    if (kind == 0)
        widget = new AnimatedMark(&window);
    else if (kind == 1)
        widget = new GifBadge(u":/assets/bye.gif"_s, 64, &window);
    else
        widget = new SealCheck(&window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*widget);
    QCOMPARE(interface.role(), QAccessible::Graphic);
    QCOMPARE(interface.object(), widget);
    QCOMPARE(nameOf(*widget), QString());
    QCOMPARE(interface.childCount(), 0);
    QVERIFY(!interface.state().focusable);
    QVERIFY(!interface.state().invisible);
    QCOMPARE(interface.parent()->object(), &window);
    QCOMPARE(interface.valueInterface(), nullptr);
    widget->setAccessibleName(u"A name"_s); // a page may still give it one
    QCOMPARE(nameOf(*widget), u"A name"_s);
}

void TestPaintedAccessibility::row()
{
    QWidget window;
    auto *row = new Row(5, u"Copy the files"_s, &window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*row);
    QCOMPARE(interface.role(), QAccessible::ListItem);
    QCOMPARE(nameOf(*row), u"Copy the files"_s);
    QVERIFY(interface.state().invisible);
    QVERIFY(interface.state().readOnly);
    row->setRevealed(true);
    QVERIFY(!interface.state().invisible); // as soon as it is on its way
    QVERIFY(interface.state().readOnly);
    row->setRevealed(false);
    QVERIFY(interface.state().invisible);
    row->setRevealed(true);
    row->resetReveal();
    QVERIFY(interface.state().invisible);
    row->setAccessibleName(u"Copied"_s);
    QCOMPARE(nameOf(*row), u"Copied"_s);
}

void TestPaintedAccessibility::rowInAHiddenWindow()
{
    QWidget window;
    auto *row = new Row(5, u"Copy the files"_s, &window);
    row->setRevealed(true);
    QVERIFY(interfaceOf(*row).state().invisible);
    window.show();
    QVERIFY(!interfaceOf(*row).state().invisible);
    window.hide();
    QVERIFY(interfaceOf(*row).state().invisible);
}

void TestPaintedAccessibility::track()
{
    QWidget window;
    auto *track = new ProgressTrack(&window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*track);
    QCOMPARE(interface.role(), QAccessible::ProgressBar);
    QAccessibleValueInterface *value = interface.valueInterface();
    QVERIFY(value);
    QCOMPARE(value->minimumValue().toDouble(), 0.0);
    QCOMPARE(value->maximumValue().toDouble(), 100.0);
    QCOMPARE(value->currentValue().toDouble(), 0.0);
    QCOMPARE(value->minimumStepSize().toDouble(), 1.0);
    QVERIFY(!interface.state().focusable);
    track->setAccessibleName(u"Progress"_s);
    QCOMPARE(nameOf(*track), u"Progress"_s);
}

void TestPaintedAccessibility::trackTellsTheTarget_data()
{
    QTest::addColumn<double>("target");
    QTest::addColumn<double>("value");
    QTest::newRow("0 %") << 0.0 << 0.0;
    QTest::newRow("43 %") << 0.43 << 43.0;
    QTest::newRow("43.7 %") << 0.437 << 43.7;
    QTest::newRow("100 %") << 1.0 << 100.0;
    QTest::newRow("too much") << 1.5 << 100.0;
    QTest::newRow("too little") << -0.5 << 0.0;
}

// At once, and not in as many steps as the bar glides through.
void TestPaintedAccessibility::trackTellsTheTarget()
{
    QFETCH(const double, target);
    QFETCH(const double, value);
    ProgressTrack track;
    track.setValue(0.2);
    track.setTarget(target);
    QCOMPARE(interfaceOf(track).valueInterface()->currentValue().toDouble(), value);
    track.reset();
    QCOMPARE(interfaceOf(track).valueInterface()->currentValue().toDouble(), 0.0);
}

void TestPaintedAccessibility::trackIsReadOnly()
{
    ProgressTrack track;
    track.setTarget(0.25);
    interfaceOf(track).valueInterface()->setCurrentValue(80);
    QCOMPARE(track.target(), 0.25);
    QCOMPARE(interfaceOf(track).valueInterface()->currentValue().toDouble(), 25.0);
}

void TestPaintedAccessibility::radioOption()
{
    QWidget window;
    auto *option = new RadioOption(u"I accept the agreement"_s, &window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*option);
    QCOMPARE(interface.role(), QAccessible::RadioButton);
    QCOMPARE(nameOf(*option), u"I accept the agreement"_s);
    QVERIFY(interface.state().checkable);
    QVERIFY(interface.state().focusable);
    QVERIFY(!interface.state().checked);
    option->setChecked(true);
    QVERIFY(interface.state().checked);
    option->setEnabled(false);
    QVERIFY(interface.state().disabled);
}

void TestPaintedAccessibility::radioOptionsOfAGroup()
{
    QWidget window;
    auto *accept = new RadioOption(u"Accept"_s, &window);
    auto *decline = new RadioOption(u"Decline"_s, &window);
    QButtonGroup group;
    group.addButton(accept);
    group.addButton(decline);
    window.show();
    decline->setChecked(true);
    QAccessibleInterface &interface = interfaceOf(*accept);
    QCOMPARE(interface.role(), QAccessible::RadioButton);
    QAccessibleActionInterface *action = interface.actionInterface();
    QVERIFY(action);
    QVERIFY(action->actionNames().contains(QAccessibleActionInterface::toggleAction()));
    const QSignalSpy toggled(accept, &QAbstractButton::toggled);
    action->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(toggled.count(), 1);
    QVERIFY(interface.state().checked);
    QVERIFY(!interfaceOf(*decline).state().checked);
}

void TestPaintedAccessibility::checkBox()
{
    QWidget window;
    auto *box = new ToggleCheckbox(u"Create a desktop shortcut"_s, &window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*box);
    QCOMPARE(interface.role(), QAccessible::CheckBox);
    QCOMPARE(nameOf(*box), u"Create a desktop shortcut"_s);
    QVERIFY(interface.state().checkable);
    QVERIFY(interface.state().focusable);
    QVERIFY(!interface.state().checked);
    QAccessibleActionInterface *action = interface.actionInterface();
    QVERIFY(action);
    action->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(box->isChecked());
    QVERIFY(interface.state().checked);
    action->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!box->isChecked());
}

void TestPaintedAccessibility::button()
{
    QWidget window;
    auto *button = new ThemedButton(u"Install"_s, 8.0, &window);
    window.show();
    QAccessibleInterface &interface = interfaceOf(*button);
    QCOMPARE(interface.role(), QAccessible::Button);
    QCOMPARE(nameOf(*button), u"Install"_s);
    QVERIFY(interface.state().focusable);
    const QSignalSpy clicked(button, &QAbstractButton::clicked);
    interface.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE_WITH_TIMEOUT(clicked.count(), 1, 10000);
    button->setEnabled(false);
    QVERIFY(interface.state().disabled);
}

void TestPaintedAccessibility::everythingElseIsAsItWas()
{
    QWidget window;
    QLabel label(u"Text"_s, &window);
    QCOMPARE(interfaceOf(label).role(), QAccessible::StaticText);
    QCOMPARE(nameOf(label), u"Text"_s);
    ConfettiOverlay overlay(&window);
    QCOMPARE(nameOf(overlay), QString());
    QVERIFY(interfaceOf(overlay).state().invisible);
}

QTEST_MAIN(TestPaintedAccessibility)
#include "tst_paintedaccessibility.moc"
