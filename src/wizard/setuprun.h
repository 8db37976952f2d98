#pragma once

#include <QObject>

/// One run as the window follows it. Its signals end with finished() or with the object.
class SetupRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// To be called once. The run may end while it starts.
    virtual void start() = 0;
    /// False if nothing on this machine changes.
    [[nodiscard]] virtual bool isReal() const = 0;

Q_SIGNALS:
    /// How far the run is, 0 to 1.
    void progress(double fraction);
    /// The file that is being worked on.
    void currentFile(const QString &path);
    /// What is being done, in words for the user.
    void statusChanged(const QString &status);
    /// Once. `error` is a sentence for the user, empty on success.
    void finished(bool ok, const QString &error);
};
