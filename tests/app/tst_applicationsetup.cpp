#include "app/applicationsetup.h"
#include "theme/thememanager.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestApplicationSetup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void names();
    void staysWhenItsLastWindowIsClosed();
    void icon();
    void fonts();
    void startsLight();
};

void TestApplicationSetup::initTestCase()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(QApplication::quitOnLastWindowClosed());
    QVERIFY(QApplication::windowIcon().isNull());
    ThemeManager::instance().setDarkMode(true);
    setUpApplication();
}

void TestApplicationSetup::names()
{
    QCOMPARE(QApplication::applicationName(), u"Varnel Schematics Setup"_s);
    QCOMPARE(QApplication::organizationName(), u"Varnel Solutions Team"_s);
}

void TestApplicationSetup::staysWhenItsLastWindowIsClosed()
{
    QVERIFY(!QApplication::quitOnLastWindowClosed());
}

void TestApplicationSetup::icon()
{
    QVERIFY(QApplication::windowIcon().availableSizes().contains(QSize(256, 256)));
}

void TestApplicationSetup::fonts()
{
    QVERIFY(QFontDatabase::applicationFontFamilies(0).contains(u"Space Grotesk"_s));
}

void TestApplicationSetup::startsLight()
{
    QCOMPARE(ThemeManager::instance().theme(), ThemeManager::Light);
}

QTEST_MAIN(TestApplicationSetup)
#include "tst_applicationsetup.moc"
