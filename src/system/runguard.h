#pragma once

#include <QObject>

class Desktop;
class QWindow;

/// Sets where run guards report to; null turns the reports off. setUpApplication() calls it, so
/// that tests do not touch the task bar.
void setDesktop(Desktop *desktop);

/// Lives as long as a run is on screen. While the run is under way, the session does not end and
/// the computer does not fall asleep; the window's button on the task bar shows how it goes.
class RunGuard : public QObject
{
    Q_OBJECT

public:
    /// A run begins. `reason` tells the user why the session has to wait; `window` must outlive the
    /// guard.
    RunGuard(QWindow &window, const QString &reason);
    /// The run is over, or left.
    ~RunGuard() override;

    /// How far the run is, 0 to 1. Before the first call the button shows a busy animation.
    void setProgress(double fraction);
    /// The run has failed: the session may end again; the button stays red until the guard is
    /// destroyed.
    void fail();

private:
    void release();

    QWindow &m_window;
    Desktop &m_desktop;
    QMetaObject::Connection m_session; ///< while the run is under way
};
