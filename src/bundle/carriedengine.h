#pragma once

#include "bundle/bundle.h"
#include "files/guardedfile.h"
#include "files/privatefolder.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

class QThread;

/// The setup engine that this program carries, as a file of its own that can be started. It is
/// unpacked by a thread, with pauses, while the user reads the first pages. Until release()
/// nobody can exchange it, and it goes with this object.
class CarriedEngine : public QObject
{
    Q_OBJECT

public:
    CarriedEngine(const QString &program, const Bundle &bundle, QObject *parent = nullptr);
    /// Ends the unpacking, which takes no longer than a piece of it.
    ~CarriedEngine() override;

    /// Begins to unpack; once, later calls do nothing.
    void start();
    /// Leaves out the pauses between two pieces. Call it when the user waits for the engine.
    void hurry() { m_isHurried = true; }

    /// Whether finished() has been emitted.
    [[nodiscard]] bool isFinished() const { return m_isFinished; }
    /// A sentence for the user; empty on success and while unpacking.
    [[nodiscard]] QString error() const { return m_error; }
    [[nodiscard]] QString path() const;

    /// Lets go of the file. To be called when somebody else holds it, or it has been started.
    void release() { m_file.release(); }

    /// Stops the unpacking and removes the engine, before the object goes. It must not run.
    void remove();

Q_SIGNALS:
    /// Once after start(), from the event loop: the engine is there, or error() says why not.
    void finished();

private:
    void unpack();
    void onUnpacked();

    const QString m_program;
    const Bundle m_bundle;
    PrivateFolder m_folder; ///< outlives the file
    GuardedFile m_file;
    QString m_error; ///< the thread's, until it has ended
    std::unique_ptr<QThread> m_thread;
    std::atomic_bool m_isHurried = false;
    bool m_isFinished = false;
};
