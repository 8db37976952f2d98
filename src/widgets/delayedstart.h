#pragma once

#include "widgets/onscreenwatcher.h"

#include <QTimer>

/// A single-shot timer for an animation that begins later. It is due at once where showsMotion() is
/// false, and as soon as the widget goes out of sight.
class DelayedStart : public QObject
{
    Q_OBJECT

public:
    /// A child of `widget`, in which the animation is to start.
    explicit DelayedStart(QWidget *widget);

    /// Starts the timer, or starts it again.
    void start(std::chrono::milliseconds delay);
    void stop();

Q_SIGNALS:
    /// Once for each start() that is not followed by stop() or another start() before. Emitted from
    /// within start() if it is due at once.
    void due();

private:
    void onScreenChanged(bool onScreen);

    QWidget *m_widget;
    QTimer m_timer;
    OnScreenWatcher m_onScreen;
};
