// Apart from the other probes, because this one needs screens, one for each case.
#include "support/stricttest.h"
#include "system/probes.h"
#include "system/screenpixels.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double kBaseDpi = 96;
// Relative, as a colon in a platform's argument begins the next one.
const QString kScreenFile = u"screens.json"_s;

std::unique_ptr<QGuiApplication> makeProgram()
{
    static int argc = 1;
    static char name[] = "tst_probes_display";
    static char *argv[] = { name, nullptr };
    return std::make_unique<QGuiApplication>(argc, argv);
}

/// A program that is shown on screens of these sizes, scaled to `percent`.
std::unique_ptr<QGuiApplication> programOnScreens(const QList<QSize> &sizes, int percent)
{
    QJsonArray screens;
    int left = 0;
    for (const QSize &size : sizes) {
        screens << QJsonObject {
            { u"name"_s, u"Screen %1"_s.arg(screens.size()) },
            { u"x"_s, left },
            { u"width"_s, size.width() },
            { u"height"_s, size.height() },
            { u"logicalDpi"_s, qRound(kBaseDpi * percent / 100) },
            { u"logicalBaseDpi"_s, qRound(kBaseDpi) },
        };
        left += size.width();
    }
    QFile file(kScreenFile);
    if (!file.open(QIODevice::WriteOnly))
        return nullptr;
    file.write(QJsonDocument(QJsonObject { { u"screens"_s, screens } }).toJson());
    file.close();

    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + kScreenFile.toLatin1());
    return makeProgram();
}

QString shownSize()
{
    return runSystemChecks(QString()).value(4).value.section(u" · "_s, 0, 0);
}

QString shown(QSize size)
{
    return u"%1 × %2"_s.arg(size.width()).arg(size.height());
}

} // namespace

class TestProbesDisplay : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void sizeIsInRealPixels_data();
    void sizeIsInRealPixels();
    void rowIsAboutThePrimaryScreen();
    void sizeIsThatOfTheSystem();

private:
    QTemporaryDir m_folder;
};

void TestProbesDisplay::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_folder.path()));
    // A program looks whether others may enter it, and warns.
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
}

void TestProbesDisplay::cleanupTestCase()
{
    QVERIFY(QDir::setCurrent(QDir::rootPath())); // a folder in use cannot be removed everywhere
}

void TestProbesDisplay::sizeIsInRealPixels_data()
{
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<int>("percent");
    for (const QSize &pixels :
         { QSize(1280, 800), QSize(1366, 768), QSize(1680, 1050), QSize(1920, 1080),
           QSize(2160, 1440), QSize(2256, 1504), QSize(2736, 1824), QSize(3840, 2160) }) {
        for (const int percent : { 100, 125, 150, 175, 200, 225, 250, 300 })
            QTest::addRow("%d x %d at %d %%", pixels.width(), pixels.height(), percent)
                << pixels << percent;
    }
}

void TestProbesDisplay::sizeIsInRealPixels()
{
    QFETCH(const QSize, pixels);
    QFETCH(const int, percent);
    const auto program = programOnScreens({ pixels }, percent);
    QVERIFY(program);
    QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(), percent / 100.0);
    QCOMPARE(shownSize(), shown(pixels));
}

void TestProbesDisplay::rowIsAboutThePrimaryScreen()
{
    const auto program = programOnScreens({ { 2560, 1600 }, { 1920, 1080 } }, 150);
    QVERIFY(program);
    QCOMPARE(QGuiApplication::screens().size(), 2);
    QCOMPARE(runSystemChecks(QString()).value(4),
             judgeDisplay(QSize(2560, 1600), QGuiApplication::primaryScreen()->refreshRate()));
}

void TestProbesDisplay::sizeIsThatOfTheSystem()
{
#ifdef Q_OS_WIN
    qputenv("QT_QPA_PLATFORM", "windows");
    qputenv("QT_SCALE_FACTOR", "1.37");
    const auto restore = qScopeGuard([] { qunsetenv("QT_SCALE_FACTOR"); });
    const auto program = makeProgram();
    const QSize size(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    QCOMPARE(shownSize(), shown(size));
    QCOMPARE(primaryScreenPixels(), size);
#else
    QSKIP("The test of a scaled desktop is for this.");
#endif
}

QTEST_APPLESS_MAIN(TestProbesDisplay)
#include "tst_probes_display.moc"
