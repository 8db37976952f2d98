#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/gifbadge.h"
#include "widgets/paintwatch.h"

#include <QMetaProperty>
#include <QMovie>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kPicture = u":/assets/bye.gif"_s;
const QString kNoPicture = u":/assets/nothing.gif"_s;
constexpr int kSide = 64;

const Course kPop { 0.0, 1.0, 400, QEasingCurve::OutBack };

} // namespace

class TestGifBadge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void construction_data();
    void construction();
    void property();
    void settingRepaints();
    void pop();
    void popOvershoots();
    void popAgain();
    void popInRealTime();
    void pictureIsThereAtOnce();
    void plays();
    void restsOutOfSight();
    void restsWhileMinimised();
    void goesOnWhereItWas();
    void unreadablePicture_data();
    void unreadablePicture();
    void cutOffPicture();
    void themeChangeRepaints();
    void reducedMotion();
};

void TestGifBadge::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestGifBadge::construction_data()
{
    QTest::addColumn<int>("side");
    QTest::newRow("64") << 64;
    QTest::newRow("38") << 38;
}

void TestGifBadge::construction()
{
    QFETCH(const int, side);
    QWidget parent;
    GifBadge badge(kPicture, side, &parent);
    badge.setGeometry(0, 0, side, side);
    QCOMPARE(badge.parent(), &parent);
    QCOMPARE(badge.sizeHint(), QSize(side, side));
    QCOMPARE(badge.popProgress(), 1.0); // one that is never popped is simply there
    QVERIFY(badge.testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(parent.childAt(side / 2, side / 2), nullptr);
}

void TestGifBadge::property()
{
    const QMetaObject &meta = GifBadge::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "popProgress");
    QCOMPARE(property.metaType(), QMetaType::fromType<double>());
    QVERIFY(property.isWritable());
    GifBadge badge(kPicture, kSide);
    QVERIFY(badge.setProperty("popProgress", 1.08)); // an overshoot is kept
    QCOMPARE(badge.popProgress(), 1.08);
}

void TestGifBadge::settingRepaints()
{
    GifBadge badge(kNoPicture, kSide); // no picture whose frames would repaint it
    PaintWatch watch(badge);
    badge.setPopProgress(0.5);
    QVERIFY(watch.seesRepaint());
}

void TestGifBadge::pop()
{
    ManualClock clock;
    GifBadge badge(kPicture, kSide);
    badge.pop();
    QCOMPARE(departure(clock, kPop, [&] { return badge.popProgress(); }), QString());
}

void TestGifBadge::popOvershoots()
{
    ManualClock clock;
    GifBadge badge(kPicture, kSide);
    badge.pop();
    double highest = 0.0;
    for (int i = 0; i < 40; ++i) {
        clock.pass(10);
        highest = qMax(highest, badge.popProgress());
    }
    QVERIFY(highest > 1.08);
    QVERIFY(highest < 1.12);
}

void TestGifBadge::popAgain()
{
    ManualClock clock;
    GifBadge badge(kPicture, kSide);
    badge.pop();
    clock.pass(150);
    QVERIFY(badge.popProgress() > 0.5);
    badge.pop();
    QCOMPARE(departure(clock, kPop, [&] { return badge.popProgress(); }), QString());
    badge.pop();
    QCOMPARE(departure(clock, kPop, [&] { return badge.popProgress(); }), QString());
}

void TestGifBadge::popInRealTime()
{
    GifBadge badge(kPicture, kSide);
    badge.pop();
    QCOMPARE(badge.popProgress(), 0.0);
    QTRY_COMPARE_WITH_TIMEOUT(badge.popProgress(), 1.0, 10000);
}

void TestGifBadge::pictureIsThereAtOnce()
{
    GifBadge badge(kPicture, kSide);
    badge.resize(badge.sizeHint());
    GifBadge bare(kNoPicture, kSide);
    bare.resize(bare.sizeHint());
    QVERIFY(grabWidget(badge) != grabWidget(bare));
}

void TestGifBadge::plays()
{
    GifBadge badge(kPicture, kSide);
    PaintWatch watch(badge);
    const QImage first = grabWidget(badge);
    for (int i = 0; i < 3; ++i)
        QVERIFY(watch.seesRepaint());
    QTRY_VERIFY_WITH_TIMEOUT(grabWidget(badge) != first, 10000);
}

void TestGifBadge::restsOutOfSight()
{
    TimerWatch timers;
    GifBadge badge(kPicture, kSide);
    badge.resize(kSide, kSide);
    const QImage first = grabWidget(badge);
    GifBadge shown(kPicture, kSide); // by whose frames the other's are told to be missing
    shown.show();
    QTRY_VERIFY_WITH_TIMEOUT(!timers.shots().isEmpty(), 10000);
    QCOMPARE(grabWidget(badge), first);
    shown.hide();
    timers.clear();
    QTimer later;
    later.setSingleShot(true);
    later.start(QMovie(kPicture).nextFrameDelay() + 300);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), QList<int>({ later.interval() }), 10000);
}

void TestGifBadge::restsWhileMinimised()
{
    TimerWatch timers;
    QWidget window;
    window.resize(100, 100);
    auto *badge = new GifBadge(kPicture, kSide, &window);
    badge->resize(kSide, kSide);
    window.show();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() > 1, 10000);
    window.showMinimized();
    QCoreApplication::processEvents();
    const QImage still = grabWidget(*badge);
    timers.clear();
    QTimer later;
    later.setSingleShot(true);
    later.start(300);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), QList<int>({ 300 }), 10000);
    QCOMPARE(grabWidget(*badge), still);
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() > 3, 10000);
}

void TestGifBadge::goesOnWhereItWas()
{
    GifBadge badge(kPicture, kSide);
    badge.resize(kSide, kSide);
    const QImage first = grabWidget(badge);
    badge.show();
    QTRY_VERIFY_WITH_TIMEOUT(grabWidget(badge) != first, 10000);
    badge.hide();
    const QImage last = grabWidget(badge);
    badge.show();
    QCOMPARE(grabWidget(badge), last);
}

void TestGifBadge::unreadablePicture_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no name") << QString();
    QTest::newRow("no such file") << u"nowhere.gif"_s;
    QTest::newRow("no such resource") << kNoPicture;
    QTest::newRow("folder") << u"."_s;
    QTest::newRow("empty file") << u"empty.gif"_s;
    QTest::newRow("text") << u"text.gif"_s;
    QTest::newRow("only a header") << u"header.gif"_s;
}

void TestGifBadge::unreadablePicture()
{
    QFETCH(QString, file);
    QTemporaryDir folder;
    const auto write = [&folder](const QString &name, const QByteArray &content) {
        QFile out(folder.filePath(name));
        return out.open(QIODevice::WriteOnly) && out.write(content) == content.size();
    };
    QVERIFY(write(u"empty.gif"_s, {}));
    QVERIFY(write(u"text.gif"_s, "This is no picture.\n"));
    QVERIFY(write(u"header.gif"_s, "GIF89a"));
    if (!file.isEmpty() && !file.startsWith(u':'))
        file = folder.filePath(file);

    if (file.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");
    GifBadge badge(file, kSide);
    PaintWatch watch(badge);
    QCOMPARE(badge.popProgress(), 1.0);
    const QImage picture = grabWidget(badge, 2.0);
    QCOMPARE(colourAt(picture, { 32, 32 }), QColor(Qt::white));
    QCOMPARE(pixelsUnlike(picture.copy(40, 40, 48, 48), Qt::white), 0);
    QCOMPARE(colourAt(picture, { 0.5, 32 }), themedColor(u"@INS_LINE"_s));
    badge.pop();
    QTRY_COMPARE_WITH_TIMEOUT(badge.popProgress(), 1.0, 10000);
}

void TestGifBadge::cutOffPicture()
{
    QTemporaryDir folder;
    QFile whole(kPicture);
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QFile half(folder.filePath(u"half.gif"_s));
    QVERIFY(half.open(QIODevice::WriteOnly));
    half.write(whole.read(whole.size() / 2));
    half.close();
    TimerWatch timers;
    GifBadge badge(half.fileName(), kSide);
    badge.show();
    QTRY_VERIFY_WITH_TIMEOUT(!timers.shots().isEmpty(), 10000);
    QTest::qWait(0);
    QCOMPARE(colourAt(grabWidget(badge, 2.0), { 0.5, 32 }), themedColor(u"@INS_LINE"_s));
}

void TestGifBadge::themeChangeRepaints()
{
    GifBadge badge(kNoPicture, kSide);
    PaintWatch watch(badge);
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(watch.seesRepaint());
}

void TestGifBadge::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    TimerWatch timers;
    GifBadge badge(kPicture, kSide);
    PaintWatch watch(badge);
    badge.pop();
    QCOMPARE(badge.popProgress(), 1.0);
    timers.clear();
    QTimer later;
    later.setSingleShot(true);
    later.start(300);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), QList<int>({ 300 }), 10000); // no frame among them
}

QTEST_MAIN(TestGifBadge)
#include "tst_gifbadge.moc"
