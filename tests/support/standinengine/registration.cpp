#include "registration.h"

#include "files.h"

#include "product/product.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QStringView kMachine = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\)";
constexpr QStringView kMachine32 = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\)";
constexpr QStringView kUser = uR"(HKEY_CURRENT_USER\SOFTWARE\)";

QString keyBelow(QStringView software)
{
    return software + uR"(Microsoft\Windows\CurrentVersion\Uninstall\)"_s + Product::kUninstallKey;
}

QString registryFile()
{
    return qEnvironmentVariable("VARNEL_REGISTRY_JSON");
}

/// A missing or empty file is an empty registry, and so is none.
QJsonObject readRegistry()
{
    const QByteArray text = readFile(registryFile()).value_or(QByteArray());
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject() && !text.trimmed().isEmpty())
        failOn(u"read the registry file"_s, registryFile(), u"it holds no JSON object"_s);
    return document.object();
}

void writeRegistry(const QJsonObject &registry)
{
    QSaveFile file(registryFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(registry).toJson()) < 0
        || !file.commit())
        failOn(u"replace the file"_s, registryFile(), file.errorString());
}

} // namespace

QString registeredFolder()
{
    const QJsonObject registry = readRegistry();
    for (const QStringView software : { kMachine, kMachine32, kUser }) {
        const QJsonObject entry = registry[keyBelow(software)].toObject();
        const QString folder = entry[u"InstallLocation"_s].toString().trimmed();
        if (QDir::isAbsolutePath(folder))
            return folder;
    }
    return {};
}

void registerProduct(const QString &folder)
{
    if (registryFile().isEmpty())
        return;
    QJsonObject registry = readRegistry();
    QJsonObject entry = registry[keyBelow(kMachine)].toObject();
    entry[u"DisplayName"_s] = QString(Product::kName + u" version "_s + Product::kVersion);
    entry[u"DisplayVersion"_s] = Product::kVersion.toString();
    entry[u"Publisher"_s] = Product::kPublisher.toString();
    entry[u"InstallLocation"_s] = QDir::toNativeSeparators(folder + u'/');
    entry[u"UninstallString"_s] = u"\"%1\""_s.arg(QDir::toNativeSeparators(folder + kUninstaller));
    registry[keyBelow(kMachine)] = entry;
    writeRegistry(registry);
}

void unregisterProduct()
{
    QJsonObject registry = readRegistry();
    if (!registry.take(keyBelow(kMachine)).isUndefined())
        writeRegistry(registry);
}
