// What assistive technology is told of the painted widgets, and what the announcer has it say.

#include "pages/lightthemetest.h"
#include "pages/timerwatch.h"
#include "widgets/animatedmark.h"
#include "widgets/announcer.h"
#include "widgets/gifbadge.h"
#include "widgets/paintedaccessibility.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/revealrow.h"
#include "widgets/sealcheck.h"
#include "widgets/spokentext.h"
#include "widgets/togglecheckbox.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

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

/// An announcer, and the moment at which what it said has been heard.
struct Talk
{
    explicit Talk(const QString &spoken = {}) { announcer.start(spoken); }

    [[nodiscard]] QTimer *speaking() const { return announcer.findChild<QTimer *>(); }
    /// What is being said now; empty if nothing is.
    [[nodiscard]] QString heard()
    {
        if (speaking()->isActive() && speaking()->interval() == 0)
            TimerWatch::fire(speaking(), 1); // with the next turn of the event loop
        return speaking()->isActive() ? announcer.text() : QString();
    }
    /// What is being said once that has been heard.
    [[nodiscard]] QString next()
    {
        TimerWatch::fire(speaking(), 1);
        return heard();
    }

    QWidget window;
    Announcer announcer { &window };
};

} // namespace

class TestPaintedAccessibility : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installPaintedAccessibility(); }
    void pictures();
    void row();
    void progressBar();
    void choices();
    void windowIsADialog();
    void spokenText_data();
    void spokenText();
    void announcerIsANotificationOfTheApplication();
    void announcerSaysEachChangeOnce();
    void announcerSaysTheLatestOfWhatChangedMeanwhile();
    void announcerWaitsAsLongAsSpeakingTakes();
    void announcerStopsAndStartsAnew();
};

void TestPaintedAccessibility::pictures()
{
    QWidget window;
    AnimatedMark mark(&window);
    GifBadge badge(u":/assets/bye.gif"_s, 64, &window);
    SealCheck seal(&window);
    for (QWidget *picture : std::initializer_list<QWidget *> { &mark, &badge, &seal }) {
        QCOMPARE(interfaceOf(*picture).role(), QAccessible::Graphic);
        QCOMPARE(nameOf(*picture), QString());
        QVERIFY(!interfaceOf(*picture).state().focusable);
    }
}

void TestPaintedAccessibility::row()
{
    QWidget window;
    auto *row = new Row(5, u"Copy the files"_s, &window);
    QAccessibleInterface &interface = interfaceOf(*row);
    QCOMPARE(interface.role(), QAccessible::ListItem);
    QCOMPARE(nameOf(*row), u"Copy the files"_s);
    QVERIFY(interface.state().readOnly);
    window.show();
    QVERIFY(interface.state().invisible);
    row->setRevealed(true);
    QVERIFY(!interface.state().invisible); // as soon as it is on its way
    row->resetReveal();
    QVERIFY(interface.state().invisible);
    row->setRevealed(true);
    window.hide();
    QVERIFY(interface.state().invisible);
}

// The target is told at once, not in as many steps as the bar glides through.
void TestPaintedAccessibility::progressBar()
{
    ProgressTrack track;
    track.setValue(0.2);
    QAccessibleInterface &interface = interfaceOf(track);
    QAccessibleValueInterface *value = interface.valueInterface();
    QVERIFY(value);
    for (double target : { 0.0, 0.4375, 1.5 }) {
        track.setTarget(target);
        QCOMPARE(value->currentValue().toDouble(), qMin(100.0 * target, 100.0));
    }
    value->setCurrentValue(80); // read only
    QCOMPARE(track.target(), 1.0);
    track.reset();
    QCOMPARE(value->currentValue().toDouble(), 0.0);
}

void TestPaintedAccessibility::choices()
{
    QWidget window;
    RadioOption option(u"Accept"_s, &window);
    ToggleCheckbox box(u"Accept"_s, &window);
    QCOMPARE(interfaceOf(option).role(), QAccessible::RadioButton);
    QCOMPARE(interfaceOf(box).role(), QAccessible::CheckBox);
    QCOMPARE(nameOf(option) + nameOf(box), u"AcceptAccept"_s);
}

void TestPaintedAccessibility::windowIsADialog()
{
    QWidget window;
    QCOMPARE(interfaceOf(window).role(), QAccessible::Dialog);
    QWidget popup(&window, Qt::Popup);
    QVERIFY(interfaceOf(popup).role() != QAccessible::Dialog);
    QLabel label(u"Text"_s, &window); // Qt's own interface
    QCOMPARE(interfaceOf(label).role(), QAccessible::StaticText);
}

void TestPaintedAccessibility::spokenText_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("spoken");
    QTest::newRow("nothing") << QStringList() << QString();
    QTest::newRow("lines") << QStringList { u"One\nTwo\n\nThree"_s } << u"One. Two. Three."_s;
    QTest::newRow("other ends") << QStringList { u"Do you?"_s, u"Begins…"_s, u"Stop!"_s }
                                << u"Do you? Begins… Stop!"_s;
    QTest::newRow("heading") << QStringList { u"Folder:\nC:\\Tools"_s } << u"Folder: C:\\Tools."_s;
    QTest::newRow("signs only") << QStringList { u"Old"_s, u"→"_s, u" "_s, QString(), u"New"_s }
                                << u"Old. New."_s;
    QTest::newRow("a figure") << QStringList { u"7"_s } << u"7."_s;
    QTest::newRow("literally") << QStringList { u"/a  b/<i>&amp; %1</i>"_s }
                               << u"/a  b/<i>&amp; %1</i>."_s;
}

void TestPaintedAccessibility::spokenText()
{
    QFETCH(const QStringList, texts);
    QFETCH(const QString, spoken);
    QCOMPARE(::spokenText(texts), spoken);
}

// Not of the window: with one in a dialog, screen readers read out all of the dialog.
void TestPaintedAccessibility::announcerIsANotificationOfTheApplication()
{
    Talk talk;
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.next(), u"Copying."_s);
    QAccessibleInterface &interface = interfaceOf(talk.announcer);
    QCOMPARE(interface.role(), QAccessible::Notification);
    QCOMPARE(nameOf(talk.announcer), u"Copying."_s);
    QCOMPARE(interface.parent()->object(), qApp);
    QVERIFY(!interface.state().invisible);
    talk.announcer.stop();
    QVERIFY(interface.state().invisible);
}

void TestPaintedAccessibility::announcerSaysEachChangeOnce()
{
    Talk talk;
    QCOMPARE(talk.next(), QString());
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.heard(), u"Copying."_s);
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.next(), QString());
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.heard(), QString());
    talk.announcer.tellStatus(u"Please wait…"_s);
    QCOMPARE(talk.heard(), u"Please wait…"_s);
    QCOMPARE(talk.next(), QString());
    talk.announcer.tellStep(u"Registering"_s);
    QCOMPARE(talk.heard(), u"Registering."_s);
}

void TestPaintedAccessibility::announcerSaysTheLatestOfWhatChangedMeanwhile()
{
    Talk talk;
    QCOMPARE(talk.next(), QString());
    for (const QString &status : { u"One"_s, u"Two"_s, u"Three"_s }) {
        talk.announcer.tellStatus(status);
        QCOMPARE(talk.heard(), u"One."_s);
    }
    QCOMPARE(talk.next(), u"Three."_s); // the last one is not lost
    talk.announcer.tellStatus(u"Four"_s);
    talk.announcer.tellStatus(u"Three"_s); // back again before the change was told
    QCOMPARE(talk.next(), QString());
}

// Voices say 12 to 17 characters in a second.
void TestPaintedAccessibility::announcerWaitsAsLongAsSpeakingTakes()
{
    for (int length : { 7, 36, 250 }) {
        const auto isRight = [length](const Talk &talk) {
            const auto pause = talk.speaking()->intervalAsDuration();
            return talk.speaking()->isActive() && pause >= 2s && pause >= length * 60ms
                && (pause == 2s || pause <= length * 85ms);
        };
        Talk talk(QString(length, u'm'));
        QVERIFY(isRight(talk));
        QCOMPARE(talk.next(), QString());
        talk.announcer.tellStatus(QString(length - 1, u'm') + u'.');
        QVERIFY(!talk.heard().isEmpty());
        QVERIFY(isRight(talk));
    }
}

void TestPaintedAccessibility::announcerStopsAndStartsAnew()
{
    Talk talk;
    talk.announcer.tellStep(u"Copying"_s);
    talk.announcer.stop();
    QVERIFY(!talk.speaking()->isActive());
    talk.announcer.tellStatus(u"Finishing up…"_s);
    QVERIFY(!talk.speaking()->isActive());
    QCOMPARE(talk.announcer.text(), QString());
    talk.announcer.start({});
    QCOMPARE(talk.next(), QString()); // nothing of the run before
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.heard(), u"Copying."_s);
}

QTEST_MAIN(TestPaintedAccessibility)
#include "tst_paintedaccessibility.moc"
