// Kinds of values that only a real registry has, and its two views of the machine's software.
#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/registry.h"

#include <QTest>

#include <windows.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kBelow = uR"(SOFTWARE\Varnel Test)"_s;
const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Varnel Test)"_s;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// The bytes of a text as the registry stores them, without an end mark.
QByteArray stored(QStringView text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
}

} // namespace

class TestRegistryTypes : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
    void bothViews();
};

void TestRegistryTypes::values_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    const auto row = [](const char *name, int type, const QByteArray &bytes, const QString &text,
                        int number) { QTest::newRow(name) << type << bytes << text << number; };
    row("text without an end mark", REG_SZ, stored(u"1.6.9"), u"1.6.9"_s, 0);
    row("no text", REG_SZ, {}, {}, 0);
    // Setup programs store their folder as it is; a variable in it is part of the name.
    row("text with variables", REG_EXPAND_SZ, stored(u"%ProgramFiles%\\Varnel\0"_s),
        u"%ProgramFiles%\\Varnel"_s, 0);
    row("several texts", REG_MULTI_SZ,
        stored(u"1\0"
               "2\0\0"_s),
        {}, 0);
    row("a list of one text", REG_MULTI_SZ, stored(u"one\0\0"_s), {}, 0);
    row("greatest number", REG_DWORD, QByteArray("\xff\xff\xff\xff", 4), {}, -1);
    row("long number", REG_QWORD, QByteArray("\xa8\x0e\x08\0\0\0\0\0", 8), {}, 528040);
    row("no bytes", REG_BINARY, {}, {}, 0);
    row("bytes", REG_BINARY, QByteArray("\1\2\3", 3), {}, 0);
}

void TestRegistryTypes::values()
{
    QFETCH(const int, type);
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    const Sandbox sandbox;
    QCOMPARE(RegSetKeyValueW(HKEY_LOCAL_MACHINE, wide(kBelow), L"Value", DWORD(type),
                             bytes.constData(), DWORD(bytes.size())),
             ERROR_SUCCESS);
    if (type != REG_BINARY || bytes.isEmpty())
        QCOMPARE(readRegistryText(kKey, u"Value"_s), text);
    QTEST(readRegistryInt(kKey, u"Value"_s), "number");
}

// A 32-bit setup engine writes into a view of its own, which we read by its name. The views belong
// to the machine's real roots, so this key is made there, and goes again.
void TestRegistryTypes::bothViews()
{
    const auto remove = qScopeGuard([] {
        for (const REGSAM view : { KEY_WOW64_32KEY, KEY_WOW64_64KEY })
            RegDeleteKeyExW(HKEY_LOCAL_MACHINE, wide(kBelow), view, 0);
    });
    for (const REGSAM view : { KEY_WOW64_32KEY, KEY_WOW64_64KEY }) {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, wide(kBelow), 0, nullptr, 0, KEY_WRITE | view,
                            nullptr, &key, nullptr))
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

QTEST_GUILESS_MAIN(TestRegistryTypes)
#include "tst_registry_types.moc"
