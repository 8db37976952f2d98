// What stands for the registry where there is none: a file.
#include "support/sandbox.h"
#include "system/registry.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test)"_s;

} // namespace

class TestRegistryFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void variableUnset();
    void fileMissing();
    void fileIsFolder();
    void unusableFile_data();
    void unusableFile();
    void noKey_data();
    void noKey();
    void otherFile();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestRegistryFile::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestRegistryFile::cleanup()
{
    m_sandbox.reset();
}

void TestRegistryFile::variableUnset()
{
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } });
    QVERIFY(readRegistryValue(kKey, u"Value"_s).isValid());
    qputenv("VARNEL_REGISTRY_JSON", "");
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
    qunsetenv("VARNEL_REGISTRY_JSON");
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistryFile::fileMissing()
{
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistryFile::fileIsFolder()
{
    qputenv("VARNEL_REGISTRY_JSON", m_sandbox->tempFolder().toLocal8Bit());
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistryFile::unusableFile_data()
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

void TestRegistryFile::unusableFile()
{
    QFETCH(const QByteArray, content);
    m_sandbox->write(u"registry.json"_s, content);
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistryFile::noKey_data()
{
    QTest::addColumn<QJsonValue>("content");
    QTest::newRow("text") << QJsonValue(u"Value"_s);
    QTest::newRow("list") << QJsonValue(QJsonArray { u"Value"_s });
    QTest::newRow("nothing") << QJsonValue(QJsonValue::Null);
}

void TestRegistryFile::noKey()
{
    QFETCH(const QJsonValue, content);
    m_sandbox->setRegistry({ { kKey, content } });
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

void TestRegistryFile::otherFile()
{
    m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } });
    qputenv("VARNEL_REGISTRY_JSON", m_sandbox->path(u"other.json"_s).toLocal8Bit());
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
    QVERIFY(QFile::rename(m_sandbox->path(u"registry.json"_s), m_sandbox->path(u"other.json"_s)));
    QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), u"1.6.9"_s);
    QVERIFY(QFile::remove(m_sandbox->path(u"other.json"_s)));
    QVERIFY(!readRegistryValue(kKey, u"Value"_s).isValid());
}

QTEST_GUILESS_MAIN(TestRegistryFile)
#include "tst_registry_file.moc"
