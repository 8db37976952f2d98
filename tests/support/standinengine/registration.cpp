#include "registration.h"

#include "files.h"

#include "product/product.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kEntry = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
    + Product::kUninstallKey;

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

void registerProduct(const QString &folder)
{
    if (registryFile().isEmpty())
        return;
    QJsonObject registry = readRegistry();
    QJsonObject entry = registry[kEntry].toObject();
    entry[u"DisplayName"_s] = QString(Product::kName + u" version "_s + Product::kVersion);
    entry[u"DisplayVersion"_s] = Product::kVersion.toString();
    entry[u"Publisher"_s] = Product::kPublisher.toString();
    entry[u"InstallLocation"_s] = QDir::toNativeSeparators(folder + u'/');
    entry[u"UninstallString"_s] = u"\"%1\""_s.arg(QDir::toNativeSeparators(folder + kUninstaller));
    registry[kEntry] = entry;
    writeRegistry(registry);
}

void unregisterProduct()
{
    QJsonObject registry = readRegistry();
    if (!registry.take(kEntry).isUndefined())
        writeRegistry(registry);
}
