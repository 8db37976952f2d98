#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "widgets/announcer.h"
#include "widgets/paintedaccessibility.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An announcer, and the moment at which its listener has heard what was said.
struct Talk
{
    explicit Talk(const QString &spoken = {}) { announcer.start(spoken); }

    [[nodiscard]] QTimer *speaking() const { return announcer.findChild<QTimer *>(); }
    /// What is being said now; empty if nothing is.
    [[nodiscard]] QString heard() const
    {
        return speaking()->isActive() ? announcer.text() : QString();
    }
    /// What is being said once that has been heard.
    [[nodiscard]] QString next()
    {
        TimerWatch::fire(speaking(), 1);
        return heard();
    }

    Announcer announcer { nullptr };
};

} // namespace

class TestAnnouncer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installPaintedAccessibility(); }
    void init() { failOnWarnings(); }
    void isANotificationOfTheApplication();
    void waitsForWhatIsSaidAtTheStart();
    void saysEachChangeOnce();
    void saysTheLatestOfWhatChangedMeanwhile();
    void stepComesBeforeStatus();
    void waitsAsLongAsItTakesToSpeak_data();
    void waitsAsLongAsItTakesToSpeak();
    void saysNothingWhenStopped();
    void startsAnew();
};

// Not of the window: with one in a dialog, screen readers read out all of the dialog.
void TestAnnouncer::isANotificationOfTheApplication()
{
    Talk talk;
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.next(), u"Copying."_s);
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&talk.announcer);
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::Notification);
    QCOMPARE(interface->text(QAccessible::Name), u"Copying."_s);
    QCOMPARE(interface->parent()->object(), qApp);
    QVERIFY(!interface->state().invisible);
    talk.announcer.stop();
    QVERIFY(interface->state().invisible);
}

void TestAnnouncer::waitsForWhatIsSaidAtTheStart()
{
    Talk talk(u"Installing. Roughly a minute."_s);
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.heard(), QString());
    QCOMPARE(talk.next(), u"Copying."_s);
}

void TestAnnouncer::saysEachChangeOnce()
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

void TestAnnouncer::saysTheLatestOfWhatChangedMeanwhile()
{
    Talk talk;
    QCOMPARE(talk.next(), QString());
    for (const QString &status : { u"One"_s, u"Two"_s, u"Three"_s }) {
        talk.announcer.tellStatus(status);
        QCOMPARE(talk.heard(), u"One."_s);
    }
    QCOMPARE(talk.next(), u"Three."_s); // the last one is not lost
    talk.announcer.tellStatus(u"Four"_s);
    talk.announcer.tellStatus(u"Three"_s); // back again before anybody was told
    QCOMPARE(talk.next(), QString());
}

void TestAnnouncer::stepComesBeforeStatus()
{
    Talk talk;
    talk.announcer.tellStatus(u"Please wait…"_s);
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.next(), u"Copying. Please wait…"_s);
}

void TestAnnouncer::waitsAsLongAsItTakesToSpeak_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("nothing") << 0;
    QTest::newRow("a word") << 7;
    QTest::newRow("a step") << 36;
    QTest::newRow("a page") << 250;
}

// Voices say 12 to 17 characters in a second.
void TestAnnouncer::waitsAsLongAsItTakesToSpeak()
{
    QFETCH(const int, length);
    const auto isRight = [length](const Talk &talk) {
        const auto pause = talk.speaking()->intervalAsDuration();
        return talk.speaking()->isActive() && pause >= 2s && pause >= length * 60ms
            && (pause == 2s || pause <= length * 85ms);
    };
    Talk talk(QString(length, u'm'));
    QVERIFY(isRight(talk));
    if (length == 0)
        return;
    QCOMPARE(talk.next(), QString());
    talk.announcer.tellStatus(QString(length - 1, u'm') + u'.');
    QVERIFY(isRight(talk));
}

void TestAnnouncer::saysNothingWhenStopped()
{
    Talk talk;
    talk.announcer.tellStep(u"Copying"_s);
    talk.announcer.stop();
    QVERIFY(!talk.speaking()->isActive());
    talk.announcer.tellStatus(u"Finishing up…"_s);
    QVERIFY(!talk.speaking()->isActive());
    QCOMPARE(talk.announcer.text(), QString());
}

void TestAnnouncer::startsAnew()
{
    Talk talk;
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.next(), u"Copying."_s);
    talk.announcer.stop();
    talk.announcer.start({});
    QCOMPARE(talk.next(), QString()); // nothing of the run before
    talk.announcer.tellStep(u"Copying"_s);
    QCOMPARE(talk.heard(), u"Copying."_s);
}

QTEST_MAIN(TestAnnouncer)
#include "tst_announcer.moc"
