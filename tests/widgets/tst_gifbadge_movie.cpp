// What a badge does with movies that end, or that never begin.

#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "widgets/gifbadge.h"
#include "widgets/paintwatch.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

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

} // namespace

class TestGifBadgeMovie : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void playsOnWithoutItsFile();
    void restsAfterItsEnd_data();
    void restsAfterItsEnd();
};

// Each frame is read and unpacked once, however long the movie goes on.
void TestGifBadgeMovie::playsOnWithoutItsFile()
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

void TestGifBadgeMovie::restsAfterItsEnd_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("shots");
    QTest::addColumn<QColor>("last");
    QTest::newRow("one frame") << animation(1) << 1 << QColor(Qt::black);
    QTest::newRow("one frame, for ever") << animation(1, 0) << 1 << QColor(Qt::black);
    QTest::newRow("two frames, once") << animation(2) << 2 << QColor(Qt::white);
    QTest::newRow("two frames, repeated once") << animation(2, 1) << 4 << QColor(Qt::white);
    QTest::newRow("no GIF") << QByteArray("This is no picture.\n") << 1 << QColor(Qt::white);
    QTest::newRow("empty file") << QByteArray() << 1 << QColor(Qt::white);
    QTest::newRow("no such file") << QByteArray() << 1 << QColor(Qt::white);
}

// What is painted later, for whatever reason, is painted once and starts nothing.
void TestGifBadgeMovie::restsAfterItsEnd()
{
    QFETCH(QByteArray, content);
    QFETCH(int, shots);
    QFETCH(QColor, last);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"picture.gif"_s));
    QVERIFY(write(file, content));
    if (QByteArrayView(QTest::currentDataTag()) == "no such file")
        QVERIFY(file.remove());
    TimerWatch timers;
    GifBadge badge(file.fileName(), kSide);
    PaintWatch watch(badge);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots().size(), shots, 10000);
    for (int i = 0; i < 3; ++i) {
        const int paints = watch.settled();
        timers.clear();
        badge.update();
        QTimer later;
        later.setSingleShot(true);
        later.start(200); // much longer than a frame
        QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), 10000);
        QCOMPARE(timers.shots(), QList<int>({ 200 }));
        QCOMPARE(watch.settled(), paints + 1);
        QCOMPARE(colourAt(grabWidget(badge), { 32, 32 }), last);
    }
}

QTEST_MAIN(TestGifBadgeMovie)
#include "tst_gifbadge_movie.moc"
