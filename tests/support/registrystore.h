#pragma once

#include <QJsonObject>
#include <QStringList>

/// The registry that this process reads as long as the object lives; empty at first. Where there is
/// a real one, the process sees a part of it that nobody else uses in place of its roots, so that
/// neither the user's entries get in the way nor ours into theirs.
class RegistryStore
{
public:
    /// `file` holds the registry where there is no real one.
    explicit RegistryStore(const QString &file);
    ~RegistryStore();
    Q_DISABLE_COPY_MOVE(RegistryStore)

    /// Replaces everything: full key path -> object of value names. What is neither a text nor a
    /// number becomes a value of a kind that nobody expects.
    void set(const QJsonObject &registry) const;
    /// Everything that is there, down to empty keys, as lines that are the same as long as it is.
    [[nodiscard]] QStringList content() const;

private:
    QString m_place;
};
