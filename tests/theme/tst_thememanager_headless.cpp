// Apart from the other tests of the manager, because these need a process that has no QApplication.
#include "theme/thememanager.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestThemeManagerHeadless : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void withoutApplication();
    void withoutWindows();
};

namespace {

void styleInVain()
{
    constexpr auto warning = "ThemeManager: QApplication instance not found.";
    ThemeManager &manager = ThemeManager::instance();
    QSignalSpy themes(&manager, &ThemeManager::themeChanged);
    QSignalSpy colors(&manager, &ThemeManager::primaryColorChanged);

    QTest::ignoreMessage(QtWarningMsg, warning);
    manager.applyStyleSheet();
    QCOMPARE(themes.count(), 0);
    QTest::ignoreMessage(QtWarningMsg, warning);
    manager.setTheme(ThemeManager::Dark);
    QCOMPARE(themes.count(), 1);
    QCOMPARE(manager.color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QTest::ignoreMessage(QtWarningMsg, warning);
    manager.setPrimaryColor(u"#123456"_s);
    QCOMPARE(colors.count(), 1);
    QCOMPARE(manager.color(u"@PRIMARY"_s), u"#123456"_s);
    // Switching alone styles nothing, so there is nothing to warn of.
    manager.setDarkMode(false);
    QCOMPARE(themes.count(), 2);
    QCOMPARE(manager.resolve(u"@INS_TX2"_s), u"#586371"_s);
}

} // namespace

void TestThemeManagerHeadless::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestThemeManagerHeadless::withoutApplication()
{
    QVERIFY(!QCoreApplication::instance());
    styleInVain();
}

void TestThemeManagerHeadless::withoutWindows()
{
    int argc = 1;
    char name[] = "headless";
    char *argv[] = { name, nullptr };
    const QCoreApplication application(argc, argv);
    styleInVain();
}

QTEST_APPLESS_MAIN(TestThemeManagerHeadless)
#include "tst_thememanager_headless.moc"
