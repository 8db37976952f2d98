#pragma once

#include "pages/setupchoices.h"
#include "wizard/setuprun.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <memory>

class CarriedEngine;
class InstallerEngine;
class QThread;

/// A run of the setup engine, with what has to be done before it is started: the engine that this
/// program carries is unpacked, an uninstaller that still runs is waited for, and where this
/// program is signed, so must be what it starts. Deleting the run does not stop the engine, whose
/// signals are then no longer forwarded.
class RealRun : public SetupRun
{
    Q_OBJECT

public:
    /// `engine` and `carried`, which may be null, must outlive the run.
    RealRun(InstallerEngine &engine, CarriedEngine *carried, const SetupChoices &choices);
    /// Waits for a check of signatures, which has the files open.
    ~RealRun() override;

    void start() override;
    [[nodiscard]] bool isReal() const override { return true; }

private:
    void onUnpacked();
    void removeWhenPossible();
    void checkPublisher(const QString &program);
    void startEngine();

    InstallerEngine &m_engine;
    CarriedEngine *const m_carried;
    const SetupChoices m_choices;
    std::unique_ptr<QThread> m_check; ///< of signatures
    bool m_isTrusted = false; ///< its result
    QTimer m_uninstallerTimer; ///< polls until the uninstaller has ended
    QDeadlineTimer m_uninstallerDeadline;
};
