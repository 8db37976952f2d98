#include "support/sandbox.h"
#include "system/registry.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test)"_s;

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void values_data();
    void values();
    void neitherTextNorNumber_data();
    void neitherTextNorNumber();
    void notThere_data();
    void notThere();
    void namesIgnoreCase_data();
    void namesIgnoreCase();
    void everyReadIsFresh();
    void readingWritesNothing();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestRegistry::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestRegistry::cleanup()
{
    m_sandbox.reset();
}

void TestRegistry::values_data()
{
    QTest::addColumn<QJsonValue>("stored");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("text") << QJsonValue(u"1.6.9"_s) << u"1.6.9"_s << 0;
    QTest::newRow("empty text") << QJsonValue(u""_s) << u""_s << 0;
    QTest::newRow("blanks stay") << QJsonValue(u"  a b \t"_s) << u"  a b \t"_s << 0;
    QTest::newRow("path") << QJsonValue(uR"(C:\Программы\Varnel)"_s) << uR"(C:\Программы\Varnel)"_s
                          << 0;
    QTest::newRow("markup") << QJsonValue(u"<b>%1 & \"x\"</b>"_s) << u"<b>%1 & \"x\"</b>"_s << 0;
    QTest::newRow("number") << QJsonValue(528040) << u"528040"_s << 528040;
    QTest::newRow("zero") << QJsonValue(0) << u"0"_s << 0;
    QTest::newRow("negative number") << QJsonValue(-7) << u"-7"_s << -7;
    QTest::newRow("number as text") << QJsonValue(u"22631"_s) << u"22631"_s << 22631;
    QTest::newRow("long text") << QJsonValue(QString(1'000'000, u'x')) << QString(1'000'000, u'x')
                               << 0;
}

void TestRegistry::values()
{
    QFETCH(const QJsonValue, stored);
    QFETCH(const QString, text);
    QFETCH(const int, number);
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, stored } } } });
    const QVariant value = readRegistryValue(kKey, u"Value"_s);
    QVERIFY(value.isValid());
    QCOMPARE(value.toString(), text);
    QCOMPARE(value.toInt(), number);
}

void TestRegistry::neitherTextNorNumber_data()
{
    QTest::addColumn<QJsonValue>("stored");
    QTest::newRow("null") << QJsonValue(QJsonValue::Null);
    QTest::newRow("true") << QJsonValue(true);
    QTest::newRow("false") << QJsonValue(false);
    QTest::newRow("list") << QJsonValue(QJsonArray { u"1.6.9"_s });
    QTest::newRow("object") << QJsonValue(QJsonObject { { u"Value"_s, u"1.6.9"_s } });
}

void TestRegistry::neitherTextNorNumber()
{
    QFETCH(const QJsonValue, stored);
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, stored } } } });
    const QVariant value = readRegistryValue(kKey, u"Value"_s);
    QCOMPARE(value.toString(), QString());
    QCOMPARE(value.toInt(), 0);
}

void TestRegistry::notThere_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    QTest::newRow("no such value") << kKey << u"Other"_s;
    QTest::newRow("front of a value's name") << kKey << u"Val"_s;
    QTest::newRow("no name") << kKey << QString();
    QTest::newRow("no such key") << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Other)"_s << u"Value"_s;
    QTest::newRow("same key, other root")
        << uR"(HKEY_CURRENT_USER\SOFTWARE\Varnel Test)"_s << u"Value"_s;
    QTest::newRow("key above") << uR"(HKEY_LOCAL_MACHINE\SOFTWARE)"_s << u"Value"_s;
    QTest::newRow("no key") << QString() << u"Value"_s;
}

void TestRegistry::notThere()
{
    QFETCH(const QString, key);
    QFETCH(const QString, name);
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } });
    QVERIFY(!readRegistryValue(key, name).isValid());
    QVERIFY(readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::namesIgnoreCase_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    QTest::newRow("as stored") << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s << u"DisplayVersion"_s;
    QTest::newRow("key in capitals")
        << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\GRÖßE)"_s << u"DisplayVersion"_s;
    QTest::newRow("key in small letters")
        << uR"(HKEY_LOCAL_MACHINE\software\größe)"_s << u"DisplayVersion"_s;
    QTest::newRow("name in capitals")
        << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s << u"DISPLAYVERSION"_s;
    QTest::newRow("name in small letters")
        << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s << u"displayversion"_s;
    QTest::newRow("both") << uR"(HKEY_LOCAL_MACHINE\Software\GRÖßE)"_s << u"displayVERSION"_s;
}

void TestRegistry::namesIgnoreCase()
{
    QFETCH(const QString, key);
    QFETCH(const QString, name);
    m_sandbox->setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s,
                               QJsonObject { { u"DisplayVersion"_s, u"1.6.9"_s } } } });
    QCOMPARE(readRegistryValue(key, name).toString(), u"1.6.9"_s);
}

// The setup engine changes the registry while the wizard is open.
void TestRegistry::everyReadIsFresh()
{
    for (const QString &text : { u"old"_s, u"new"_s }) {
        m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, text } } } });
        QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), text);
    }
    m_sandbox->setRegistry({});
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::readingWritesNothing()
{
    for (const QJsonObject &registry :
         { QJsonObject(), QJsonObject { { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } } }) {
        m_sandbox->setRegistry(registry);
        const QStringList before = m_sandbox->storedRegistry();
        for (const QString &key :
             { kKey, QString(kKey + uR"(\Below)"), uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Other\Below)"_s,
               uR"(HKEY_LOCAL_MACHINE\SYSTEM\Other)"_s, uR"(HKEY_CURRENT_USER\SOFTWARE\Other)"_s,
               uR"(HKEY_CURRENT_USER\SOFTWARE)"_s })
            QVERIFY(!readRegistryValue(key, u"Other"_s).isValid());
        QCOMPARE(m_sandbox->storedRegistry(), before);
    }
}

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
