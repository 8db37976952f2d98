#pragma once

#include <QObject>

class Desktop;
class QWindow;

/// Sets the desktop that runs are told to; null tells nobody. Start-up does so, as a window in a
/// test has no business with the task bar.
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

    /// How far the run is, 0 to 1. Until then it is waited for.
    void setProgress(double fraction);
    /// The run has failed: it is over, and only the button goes on showing that.
    void fail();

private:
    void release();

    QWindow &m_window;
    Desktop &m_desktop;
    QMetaObject::Connection m_session; ///< while the run is under way
};
