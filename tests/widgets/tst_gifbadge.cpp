#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/gifbadge.h"
#include "widgets/paintwatch.h"
#include "widgets/reducedmotion.h"

#include <QMovie>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kMovie = u":/assets/bye.gif"_s;
constexpr int kSide = 64;

/// A GIF of single pixels, black and white in turns, 50 ms each. Without a number of repetitions it
/// plays once; 0 of them is for ever.
QByteArray animation(int frames, int repetitions = -1)
{
    QByteArray gif("GIF89a\1\0\1\0\x80\0\0" // 1 x 1, two colours
                   "\0\0\0\xff\xff\xff",
                   19);
    if (repetitions >= 0)
        gif += QByteArray("\x21\xff\x0bNETSCAPE2.0\3\1", 16) + char(repetitions) + '\0' + '\0';
    for (int i = 0; i < frames; ++i) {
        gif += QByteArray("\x21\xf9\4\0\5\0\0\0" // delay, in hundredths of a second
                          "\x2c\0\0\0\0\1\0\1\0\0", // all of the picture
                          18);
        gif += QByteArray("\2\2", 2) + (i % 2 ? '\x4c' : '\x44') + QByteArray("\1\0", 2);
    }
    return gif + ';';
}

bool write(QFile &file, const QByteArray &content)
{
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    file.close();
    return isWritten;
}

/// Whether no timer, and so no movie, goes on within `milliseconds`.
bool isStill(TimerWatch &timers, int milliseconds = 300)
{
    timers.clear();
    QTimer later;
    later.setSingleShot(true);
    later.start(milliseconds);
    return QTest::qWaitFor([&] { return !later.isActive(); }, 10000)
        && timers.shots() == QList<int> { milliseconds };
}

} // namespace

class TestGifBadge : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void popsIn();
    void playsOnlyWhereItIsSeen();
    void goesOnWhereItWas();
    void reducedMotion();
    void playsOnWithoutItsFile();
    void restsAfterItsEnd_data();
    void restsAfterItsEnd();
};

void TestGifBadge::popsIn()
{
    const Course course { 0.0, 1.0, 400, QEasingCurve::OutBack };
    ManualClock clock;
    GifBadge badge(kMovie, kSide);
    QCOMPARE(badge.popProgress(), 1.0); // one that is never popped is simply there
    badge.pop();
    QCOMPARE(departure(clock, course, [&] { return badge.popProgress(); }), QString());
    badge.pop();
    clock.pass(150);
    badge.pop();
    QCOMPARE(departure(clock, course, [&] { return badge.popProgress(); }), QString());
}

void TestGifBadge::playsOnlyWhereItIsSeen()
{
    TimerWatch timers;
    QWidget window;
    window.resize(100, 100);
    auto *badge = new GifBadge(kMovie, kSide, &window);
    badge->resize(kSide, kSide);
    const QImage first = grabWidget(*badge);
    QVERIFY(isStill(timers, QMovie(kMovie).nextFrameDelay() + 300));
    QCOMPARE(grabWidget(*badge), first);
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() > 3, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(grabWidget(*badge) != first, 10000);
    window.showMinimized();
    QCoreApplication::processEvents();
    const QImage still = grabWidget(*badge);
    QVERIFY(isStill(timers));
    QCOMPARE(grabWidget(*badge), still);
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() > 3, 10000);
}

void TestGifBadge::goesOnWhereItWas()
{
    GifBadge badge(kMovie, kSide);
    badge.resize(kSide, kSide);
    const QImage first = grabWidget(badge);
    PaintWatch watch(badge);
    QTRY_VERIFY_WITH_TIMEOUT(grabWidget(badge) != first, 10000);
    QVERIFY(watch.seesRepaint());
    badge.hide();
    const QImage last = grabWidget(badge);
    badge.show();
    QCOMPARE(grabWidget(badge), last);
}

void TestGifBadge::reducedMotion()
{
    const ReducedMotion reduced;
    TimerWatch timers;
    GifBadge badge(kMovie, kSide);
    PaintWatch watch(badge);
    badge.pop();
    QCOMPARE(badge.popProgress(), 1.0);
    QVERIFY(isStill(timers));
}

// Each frame is read and unpacked once, however long the movie goes on.
void TestGifBadge::playsOnWithoutItsFile()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"for-ever.gif"_s));
    QVERIFY(write(file, animation(2, 0)));
    TimerWatch timers;
    GifBadge badge(file.fileName(), kSide);
    badge.show();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() >= 3, 10000); // it has begun anew
    QVERIFY(file.resize(0));
    timers.clear();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() >= 6, 10000);
    const QColor middle = colourAt(grabWidget(badge), { 32, 32 });
    QTRY_VERIFY_WITH_TIMEOUT(colourAt(grabWidget(badge), { 32, 32 }) != middle, 10000);
}

void TestGifBadge::restsAfterItsEnd_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("shots");
    QTest::addColumn<QColor>("last");
    QTest::newRow("one frame, for ever") << animation(1, 0) << 1 << QColor(Qt::black);
    QTest::newRow("two frames, once") << animation(2) << 2 << QColor(Qt::white);
    QTest::newRow("two frames, repeated once") << animation(2, 1) << 4 << QColor(Qt::white);
    QTest::newRow("no GIF") << QByteArray("This is no picture.\n") << 1 << QColor(Qt::white);
    QTest::newRow("no such file") << QByteArray() << 1 << QColor(Qt::white);
}

// What is painted later, for whatever reason, is painted once and starts nothing. A picture that
// cannot be read leaves a white disc.
void TestGifBadge::restsAfterItsEnd()
{
    QFETCH(const QByteArray, content);
    QFETCH(const int, shots);
    QFETCH(const QColor, last);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"picture.gif"_s));
    QVERIFY(write(file, content));
    if (QByteArrayView(QTest::currentDataTag()) == "no such file")
        QVERIFY(file.remove());
    TimerWatch timers;
    GifBadge badge(file.fileName(), kSide);
    PaintWatch watch(badge);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots().size(), shots, 10000);
    for (int i = 0; i < 2; ++i) {
        const int paints = watch.settled();
        badge.update();
        QVERIFY(isStill(timers, 200)); // much longer than a frame
        QCOMPARE(watch.settled(), paints + 1);
        QCOMPARE(colourAt(grabWidget(badge), { 32, 32 }), last);
    }
}

QTEST_MAIN(TestGifBadge)
#include "tst_gifbadge.moc"
