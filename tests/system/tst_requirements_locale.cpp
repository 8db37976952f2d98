// Apart from the other judgements, because a process takes its locale once, at its start.
#include "system/requirements.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestRequirementsLocale : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("LC_ALL", "de_DE.UTF-8"); }

private Q_SLOTS:
    void initTestCase();
    void init();
    void freeSpaceFollowsTheLocale();
    void otherNumbersHaveAPoint();
};

void TestRequirementsLocale::initTestCase()
{
    if (QLocale::system().decimalPoint() != u","_s)
        QSKIP("This system takes its locale from somewhere else than the environment.");
}

void TestRequirementsLocale::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestRequirementsLocale::freeSpaceFollowsTheLocale()
{
    QCOMPARE(judgeDiskSpace(1'610'612'736, u"D:"_s).value,
             u"220 MB required · 1,5 GB free on D:"_s);
    QCOMPARE(judgeDiskSpace(115'343'360, u"D:"_s).value,
             u"220 MB required · only 110,0 MB free on D:"_s);
}

void TestRequirementsLocale::otherNumbersHaveAPoint()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(judgeMemory(1ULL << 33).value, u"8.0 GB"_s);
    QCOMPARE(judgeMemory(1ULL << 42).value, u"4096 GB"_s);
    QCOMPARE(judgeProcessor(u"Chip"_s, 2300, u"x"_s).value, u"Chip · 2.3 GHz"_s);
    QCOMPARE(judgeDisplay(QSize(10240, 4320), 1000.0).value, u"10240 × 4320 · 1000 Hz"_s);
}

QTEST_GUILESS_MAIN(TestRequirementsLocale)
#include "tst_requirements_locale.moc"
