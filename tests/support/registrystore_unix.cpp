#include "support/registrystore.h"

#include <QFile>
#include <QJsonDocument>

RegistryStore::RegistryStore(const QString &file) : m_place(file) {}

RegistryStore::~RegistryStore() = default;

void RegistryStore::set(const QJsonObject &registry) const
{
    const QByteArray content = QJsonDocument(registry).toJson();
    QFile file(m_place);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qUtf8Printable(m_place));
}

QStringList RegistryStore::content() const
{
    QFile file(m_place);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n')
                                          : QStringList();
}
