#include "support/sandbox.h"
#include "system/registry.h"

#include <QFile>
#include <QFileInfo>
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
    void variableUnset();
    void fileMissing();
    void fileIsFolder();
    void unusableFile_data();
    void unusableFile();
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
    QTest::newRow("key holds a text") << u"Text"_s << u"Value"_s;
    QTest::newRow("key holds a list") << u"List"_s << u"Value"_s;
    QTest::newRow("key holds nothing") << u"Nothing"_s << u"Value"_s;
}

void TestRegistry::notThere()
{
    QFETCH(const QString, key);
    QFETCH(const QString, name);
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } },
                             { u"Text"_s, u"Value"_s },
                             { u"List"_s, QJsonArray { u"Value"_s } },
                             { u"Nothing"_s, QJsonValue::Null } });
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
        << uR"(hkey_local_machine\software\größe)"_s << u"DisplayVersion"_s;
    QTest::newRow("name in capitals")
        << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s << u"DISPLAYVERSION"_s;
    QTest::newRow("name in small letters")
        << uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s << u"displayversion"_s;
    QTest::newRow("both") << uR"(HKEY_Local_Machine\Software\GRÖßE)"_s << u"displayVERSION"_s;
}

void TestRegistry::namesIgnoreCase()
{
    QFETCH(const QString, key);
    QFETCH(const QString, name);
    m_sandbox->setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s,
                               QJsonObject { { u"DisplayVersion"_s, u"1.6.9"_s } } } });
    QCOMPARE(readRegistryValue(key, name).toString(), u"1.6.9"_s);
}

void TestRegistry::variableUnset()
{
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } });
    QVERIFY(readRegistryValue(kKey, u"Value"_s).isValid());
    qputenv("VARNEL_REGISTRY_JSON", "");
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
    qunsetenv("VARNEL_REGISTRY_JSON");
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::fileMissing()
{
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::fileIsFolder()
{
    qputenv("VARNEL_REGISTRY_JSON", m_sandbox->tempFolder().toLocal8Bit());
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::unusableFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("[Settings]\nValue=1.6.9\n");
    QTest::newRow("cut off") << QByteArray(
        R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1.)");
    QTest::newRow("text behind") << QByteArray(
        R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1" } } x)");
    QTest::newRow("single back-slashes")
        << QByteArray(R"({ "HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test": { "Value": "1" } })");
    QTest::newRow("a list") << QByteArray(
        R"([ { "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1" } } ])");
    QTest::newRow("a null") << QByteArray("null");
    QTest::newRow("zero bytes") << QByteArray(64, '\0');
}

void TestRegistry::unusableFile()
{
    QFETCH(const QByteArray, content);
    m_sandbox->write(u"registry.json"_s, content);
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

// The setup engine changes the registry while the wizard is open.
void TestRegistry::everyReadIsFresh()
{
    const auto store = [this](const QString &text) {
        m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, text } } } });
    };
    store(u"old"_s);
    QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), u"old"_s);
    store(u"new"_s);
    QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), u"new"_s);

    qputenv("VARNEL_REGISTRY_JSON", m_sandbox->path(u"other.json"_s).toLocal8Bit());
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
    QVERIFY(QFile::rename(m_sandbox->path(u"registry.json"_s), m_sandbox->path(u"other.json"_s)));
    QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), u"new"_s);
    QVERIFY(QFile::remove(m_sandbox->path(u"other.json"_s)));
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistry::readingWritesNothing()
{
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"registry.json"_s)));

    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } });
    const QByteArray before = m_sandbox->read(u"registry.json"_s);
    QVERIFY(!readRegistryValue(uR"(HKEY_CURRENT_USER\SOFTWARE\Other)"_s, u"Value"_s).isValid());
    QCOMPARE(m_sandbox->read(u"registry.json"_s), before);
}

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
