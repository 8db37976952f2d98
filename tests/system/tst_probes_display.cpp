// Apart from the other probes, because this one needs a screen, and on that a scale of its own.
#include "system/probes.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestProbesDisplay : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_SCALE_FACTOR", "2"); }

private Q_SLOTS:
    void init();
    void sizeIsInRealPixels();
};

void TestProbesDisplay::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestProbesDisplay::sizeIsInRealPixels()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    QVERIFY(screen);
    QCOMPARE(screen->devicePixelRatio(), 2.0);
    const CheckResult result = runSystemChecks(QString()).value(4);
    QCOMPARE(result.label, u"Graphics · display"_s);
    QCOMPARE(result.value,
             u"%1 × %2 · %3 Hz"_s.arg(screen->size().width() * 2)
                 .arg(screen->size().height() * 2)
                 .arg(qRound(screen->refreshRate())));
    QVERIFY(result.ok);
}

QTEST_MAIN(TestProbesDisplay)
#include "tst_probes_display.moc"
