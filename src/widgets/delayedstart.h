#pragma once

#include "widgets/onscreenwatcher.h"

#include <QTimer>

/// The moment between two parts of an entrance: a single shot that can be started anew and called
/// off. It keeps nobody waiting: where no motion is shown, or no longer, it is due at once.
class DelayedStart : public QObject
{
    Q_OBJECT

public:
    /// Belongs to `widget`, in which something is to start.
    explicit DelayedStart(QWidget *widget);

    /// Counts `delay` from now on, also if it is being counted already.
    void start(std::chrono::milliseconds delay);
    void stop();

Q_SIGNALS:
    /// Once for each start() that is not stopped or followed by another; perhaps from within it.
    void due();

private:
    void onScreenChanged(bool onScreen);

    QWidget *m_widget;
    QTimer m_timer;
    OnScreenWatcher m_onScreen;
};
