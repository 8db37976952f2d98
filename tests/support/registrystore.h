#pragma once

#include <QJsonObject>
#include <QStringList>

/// The registry that this process reads as long as the object lives; empty at first. On Windows, a
/// key that nobody else uses takes the place of the roots, so that the test does not see the user's
/// entries and cannot change them.
class RegistryStore
{
public:
    /// `file` holds the registry where there is no real one.
    explicit RegistryStore(const QString &file);
    ~RegistryStore();
    Q_DISABLE_COPY_MOVE(RegistryStore)

    /// Replaces everything: full key path -> object of value names. What is neither a text nor a
    /// number becomes a value without a type.
    void set(const QJsonObject &registry) const;
    /// Everything that is there, also empty keys, as lines to be compared.
    [[nodiscard]] QStringList content() const;

private:
    QString m_place;
};
