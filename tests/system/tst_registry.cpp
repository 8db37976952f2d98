#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/registry.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

#include <optional>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test)"_s;

#ifdef Q_OS_WIN
const wchar_t kBelow[] = LR"(SOFTWARE\Varnel Test)";

/// The bytes of a text as the registry stores them, without an end mark.
QByteArray bytesOf(QStringView text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}
#endif

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
#ifdef Q_OS_WIN
    void types_data();
    void types();
    void bothViews();
#else
    void unusableFile();
#endif

private:
    void setValue(const QJsonValue &value) const
    {
        m_sandbox->setRegistry({ { kKey, QJsonObject { { u"Value"_s, value } } } });
    }
    static bool hasValue()
    {
        return readRegistryValue(kKey, u"Value"_s).isValid();
    }

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
    row("negative number", -7, u"-7"_s, {}, -7);
    row("number as text", u"22631"_s, u"22631"_s, u"22631"_s, 22631);
    row("number and more", u"22631.1"_s, u"22631.1"_s, u"22631.1"_s, 0);
    row("too great", u"4294967296"_s, u"4294967296"_s, u"4294967296"_s, 0);
    const QString longText(1'000'000, u'x');
    row("long text", longText, longText, longText, 0);
    row("null", QJsonValue::Null, {}, {}, 0);
    row("list", QJsonArray { u"1.6.9"_s }, {}, {}, 0);
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

#ifdef Q_OS_WIN

// Kinds of values that only a real registry has.
void TestRegistry::types_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    const auto row = [](const char *name, int type, const QByteArray &bytes, const QString &text,
                        int number) { QTest::newRow(name) << type << bytes << text << number; };
    row("text without an end mark", REG_SZ, bytesOf(u"1.6.9"), u"1.6.9"_s, 0);
    row("no text", REG_SZ, {}, {}, 0);
    // Setup programs store their folder as it is; a variable in it is part of the name.
    row("text with variables", REG_EXPAND_SZ, bytesOf(u"%ProgramFiles%\\Varnel\0"_s),
        u"%ProgramFiles%\\Varnel"_s, 0);
    row("several texts", REG_MULTI_SZ,
        bytesOf(u"1\0"
                "2\0\0"_s),
        {}, 0);
    row("a list of one text", REG_MULTI_SZ, bytesOf(u"one\0\0"_s), {}, 0);
    row("greatest number", REG_DWORD, QByteArray("\xff\xff\xff\xff", 4), {}, -1);
    row("long number", REG_QWORD, QByteArray("\xa8\x0e\x08\0\0\0\0\0", 8), {}, 528040);
    row("no bytes", REG_BINARY, {}, {}, 0);
    row("bytes", REG_BINARY, QByteArray("\1\2\3", 3), {}, 0);
}

void TestRegistry::types()
{
    QFETCH(const int, type);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    QCOMPARE(RegSetKeyValueW(HKEY_LOCAL_MACHINE, kBelow, L"Value", DWORD(type), bytes.constData(),
                             DWORD(bytes.size())),
             ERROR_SUCCESS);
    if (type != REG_BINARY || bytes.isEmpty())
        QCOMPARE(readRegistryText(kKey, u"Value"_s), text);
    QTEST(readRegistryInt(kKey, u"Value"_s), "number");
}

// A 32-bit setup engine writes into a view of its own, which we read by its name. The views belong
// to the machine's real roots, so this key is made there, and goes again.
void TestRegistry::bothViews()
{
    m_sandbox.reset();
    const auto remove = qScopeGuard([] {
        for (const REGSAM view : { KEY_WOW64_32KEY, KEY_WOW64_64KEY })
            RegDeleteKeyExW(HKEY_LOCAL_MACHINE, kBelow, view, 0);
    });
    for (const REGSAM view : { KEY_WOW64_32KEY, KEY_WOW64_64KEY }) {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, kBelow, 0, nullptr, 0, KEY_WRITE | view, nullptr,
                            &key, nullptr))
            QSKIP("This user may not write there.");
        const DWORD bits = view == KEY_WOW64_32KEY ? 32 : 64;
        const LSTATUS error = RegSetValueExW(key, L"Bits", 0, REG_DWORD,
                                             reinterpret_cast<const BYTE *>(&bits), sizeof bits);
        RegCloseKey(key);
        QCOMPARE(error, ERROR_SUCCESS);
    }
    QCOMPARE(readRegistryInt(kKey, u"Bits"_s), 64);
    QCOMPARE(
        readRegistryInt(uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Varnel Test)"_s, u"Bits"_s),
        32);
}

#else

// What stands for the registry on other systems.
void TestRegistry::unusableFile()
{
    for (const char *content : {
             R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1.)",
             R"([ { "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": { "Value": "1" } } ])",
             R"({ "HKEY_LOCAL_MACHINE\\SOFTWARE\\Varnel Test": "Value" })",
         }) {
        m_sandbox->write(u"registry.json"_s, content);
        QVERIFY2(!hasValue(), content);
    }
    setValue(u"1.6.9"_s);
    QVERIFY(hasValue());
    for (const QString &file : { u""_s, m_sandbox->path(u"gone"_s), m_sandbox->tempFolder() }) {
        qputenv("VARNEL_REGISTRY_JSON", file.toLocal8Bit());
        QVERIFY2(!hasValue(), qPrintable(file));
    }
}

#endif

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
