#include "support/registrystore.h"

#include <QUuid>

#include <windows.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Root
{
    HKEY key;
    QString name;
    QStringList firstKeys; ///< of those that every Windows has, what our program looks below
};

const QList<Root> &roots()
{
    static const QList<Root> list {
        { HKEY_LOCAL_MACHINE,
          u"HKEY_LOCAL_MACHINE"_s,
          { u"HARDWARE"_s, u"SOFTWARE"_s, u"SYSTEM"_s } },
        { HKEY_CURRENT_USER, u"HKEY_CURRENT_USER"_s, { u"SOFTWARE"_s } },
    };
    return list;
}

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

HKEY createKey(HKEY parent, const QString &path)
{
    HKEY key = nullptr;
    if (RegCreateKeyExW(parent, wide(path), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr))
        qFatal("Cannot make the registry key %s", qUtf8Printable(path));
    return key;
}

void setValue(HKEY key, const QString &name, const QJsonValue &value)
{
    const auto store = [&](DWORD type, const void *data, qsizetype size) {
        if (RegSetValueExW(key, wide(name), 0, type, static_cast<const BYTE *>(data), DWORD(size)))
            qFatal("Cannot set the registry value %s", qUtf8Printable(name));
    };
    if (value.isString()) {
        const QString text = value.toString();
        store(REG_SZ, text.utf16(), (text.size() + 1) * qsizetype(sizeof(wchar_t)));
    } else if (value.isDouble()) {
        const auto number = DWORD(value.toInt());
        store(REG_DWORD, &number, sizeof number);
    } else {
        store(REG_NONE, nullptr, 0);
    }
}

void makeFirstKeys(const Root &root)
{
    for (const QString &name : root.firstKeys)
        RegCloseKey(createKey(root.key, name));
}

/// Adds a line for each key below and each value of `key`.
void list(HKEY key, const QString &path, QStringList &lines)
{
    constexpr DWORD kNameSize = 256; // the longest name of a key
    wchar_t name[kNameSize];
    DWORD length = kNameSize;
    for (DWORD i = 0; RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == 0;
         ++i) {
        const QString below = path + u'\\' + QString::fromWCharArray(name, int(length));
        lines << below;
        HKEY handle = nullptr;
        if (RegOpenKeyExW(key, name, 0, KEY_READ, &handle) == 0) {
            list(handle, below, lines);
            RegCloseKey(handle);
        }
        length = kNameSize;
    }
    DWORD type = 0;
    for (DWORD i = 0; RegEnumValueW(key, i, name, &length, nullptr, &type, nullptr, nullptr) == 0;
         ++i) {
        lines << path + u'@' + QString::fromWCharArray(name, int(length)) + u' '
                + QString::number(type);
        length = kNameSize;
    }
}

} // namespace

RegistryStore::RegistryStore(const QString &)
    : m_place(uR"(Software\Varnel Tests\)" + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    QList<HKEY> replacements;
    for (const Root &root : roots())
        replacements << createKey(HKEY_CURRENT_USER, QString(m_place + u'\\' + root.name));
    for (qsizetype i = 0; i < replacements.size(); ++i) {
        if (RegOverridePredefKey(roots()[i].key, replacements[i]))
            qFatal("Cannot replace the registry's roots");
        RegCloseKey(replacements[i]);
        makeFirstKeys(roots()[i]);
    }
}

RegistryStore::~RegistryStore()
{
    for (const Root &root : roots())
        RegOverridePredefKey(root.key, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, wide(m_place));
}

void RegistryStore::set(const QJsonObject &registry) const
{
    for (const Root &root : roots()) {
        RegDeleteTreeW(root.key, nullptr);
        makeFirstKeys(root);
    }
    for (auto key = registry.begin(); key != registry.end(); ++key) {
        const QString path = key.key();
        for (const Root &root : roots()) {
            if (!path.startsWith(root.name + u'\\') || !key->isObject())
                continue;
            const HKEY handle = createKey(root.key, path.sliced(root.name.size() + 1));
            const QJsonObject values = key->toObject();
            for (auto value = values.begin(); value != values.end(); ++value)
                setValue(handle, value.key(), value.value());
            RegCloseKey(handle);
        }
    }
}

QStringList RegistryStore::content() const
{
    QStringList lines;
    for (const Root &root : roots())
        list(root.key, root.name, lines);
    return lines;
}
