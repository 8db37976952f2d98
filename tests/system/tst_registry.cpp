#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/registry.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test)"_s;

} // namespace

class TestRegistry : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StrictTest::init();
        m_sandbox.emplace();
    }
    void values_data();
    void values();
    void notThere();
    void namesIgnoreCase();
    void everyReadIsFresh();
    void readingWritesNothing();
    void unusableFile();

private:
    void setValue(const QJsonValue &value) const
    {
        m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, value } } } });
    }
    static bool hasValue() { return readRegistryValue(kKey, u"Value"_s).isValid(); }

    std::optional<Sandbox> m_sandbox;
};

void TestRegistry::values_data()
{
    QTest::addColumn<QJsonValue>("stored");
    QTest::addColumn<QString>("text"); // as it is stored
    QTest::addColumn<QString>("trimmedText"); // empty for what is no text
    QTest::addColumn<int>("number");
    const auto row = [](const char *name, const QJsonValue &stored, const QString &text,
                        const QString &trimmedText, int number) {
        QTest::newRow(name) << stored << text << trimmedText << number;
    };
    row("text", u"1.6.9"_s, u"1.6.9"_s, u"1.6.9"_s, 0);
    row("empty text", u""_s, u""_s, u""_s, 0);
    row("blanks around", u"  a b \t"_s, u"  a b \t"_s, u"a b"_s, 0);
    row("signs", uR"(C:\Про\<b>%1 & "x")"_s, uR"(C:\Про\<b>%1 & "x")"_s, uR"(C:\Про\<b>%1 & "x")"_s,
        0);
    row("number", 528040, u"528040"_s, {}, 528040);
    row("greatest number", 2147483647, u"2147483647"_s, {}, 2147483647);
    row("negative number", -7, u"-7"_s, {}, -7);
    row("number as text", u"22631"_s, u"22631"_s, u"22631"_s, 22631);
    row("number and more", u"22631.1"_s, u"22631.1"_s, u"22631.1"_s, 0);
    row("too great", u"4294967296"_s, u"4294967296"_s, u"4294967296"_s, 0);
    const QString longText(1'000'000, u'x');
    row("long text", longText, longText, longText, 0);
    row("null", QJsonValue::Null, {}, {}, 0);
    row("truth value", true, {}, {}, 0);
    row("list", QJsonArray { u"1.6.9"_s }, {}, {}, 0);
    row("object", QJsonObject { { u"Value"_s, u"1.6.9"_s } }, {}, {}, 0);
}

void TestRegistry::values()
{
    QFETCH(const QJsonValue, stored);
    QFETCH(const QString, text);
    QFETCH(const QString, trimmedText);
    QFETCH(const int, number);
    setValue(stored);
    QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), text);
    QCOMPARE(readRegistryText(kKey, u"Value"_s), trimmedText);
    QCOMPARE(readRegistryInt(kKey, u"Value"_s), number);
    if (stored.isString() || stored.isDouble())
        QVERIFY(hasValue());
}

void TestRegistry::notThere()
{
    setValue(u"1.6.9"_s);
    const QList<std::pair<QString, QString>> places {
        { kKey, u"Val"_s },
        { kKey, {} },
        { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Other)"_s, u"Value"_s },
        { uR"(HKEY_CURRENT_USER\SOFTWARE\Varnel Test)"_s, u"Value"_s },
        { uR"(HKEY_LOCAL_MACHINE\SOFTWARE)"_s, u"Value"_s },
        { {}, u"Value"_s },
    };
    for (const auto &[key, name] : places) {
        QVERIFY2(!readRegistryValue(key, name).isValid(), qPrintable(key));
        QCOMPARE(readRegistryText(key, name), QString());
        QCOMPARE(readRegistryInt(key, name), 0);
    }
    QVERIFY(hasValue());
}

void TestRegistry::namesIgnoreCase()
{
    m_sandbox->setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s,
                               QJsonObject { { u"DisplayVersion"_s, u"1.6.9"_s } } } });
    for (const QString &key :
         { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Größe)"_s, uR"(HKEY_LOCAL_MACHINE\software\GRÖßE)"_s }) {
        for (const QString &name : { u"DisplayVersion"_s, u"displayVERSION"_s })
            QCOMPARE(readRegistryValue(key, name).toString(), u"1.6.9"_s);
    }
}

// The setup engine changes the registry while the wizard is open.
void TestRegistry::everyReadIsFresh()
{
    for (const QString &text : { u"old"_s, u"new"_s }) {
        setValue(text);
        QCOMPARE(readRegistryValue(kKey, u"Value"_s).toString(), text);
    }
    m_sandbox->setRegistry({});
    QVERIFY(!hasValue());
}

void TestRegistry::readingWritesNothing()
{
    for (const QJsonObject &registry :
         { QJsonObject(), QJsonObject { { kKey, QJsonObject { { u"Value"_s, u"1.6.9"_s } } } } }) {
        m_sandbox->setRegistry(registry);
        const QStringList before = m_sandbox->storedRegistry();
        for (const QString &key :
             { kKey, QString(kKey + uR"(\Below)"), uR"(HKEY_LOCAL_MACHINE\SYSTEM\Other)"_s,
               uR"(HKEY_CURRENT_USER\SOFTWARE\Other)"_s, uR"(HKEY_CURRENT_USER\SOFTWARE)"_s })
            QVERIFY(!readRegistryValue(key, u"Other"_s).isValid());
        QCOMPARE(m_sandbox->storedRegistry(), before);
    }
}

void TestRegistry::unusableFile()
{
#ifdef Q_OS_WIN
    QSKIP("Here the registry is no file.");
#endif
    setValue(u"1.6.9"_s);
    QVERIFY(hasValue());
    for (const char *content : {
             "",
             R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1.)",
             R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1" } } x)",
             R"([ { "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1" } } ])",
             R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": "Value" })",
         }) {
        m_sandbox->write(u"registry.json"_s, content);
        QVERIFY2(!hasValue(), content);
    }
    setValue(u"1.6.9"_s);
    for (const QString &file : { u""_s, m_sandbox->path(u"gone"_s), m_sandbox->tempFolder() }) {
        qputenv("VARNEL_REGISTRY_JSON", file.toLocal8Bit());
        QVERIFY2(!hasValue(), qPrintable(file));
    }
    qunsetenv("VARNEL_REGISTRY_JSON");
    QVERIFY(!hasValue());
}

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
