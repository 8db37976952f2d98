#pragma once

#include "widgets/delayedstart.h"

class ConfettiOverlay;
class SealCheck;
class QWidget;

/// What follows a success: the seal plays at once, and a moment later confetti bursts from it over
/// the whole window.
class Celebration : public QObject
{
    Q_OBJECT

public:
    /// Lays the confetti over `window`, which owns this object from here on.
    explicit Celebration(QWidget *window);

    void start(SealCheck *seal);
    /// Calls off a burst that is still to come.
    void stop();

private:
    void burst();

    ConfettiOverlay *m_confetti;
    SealCheck *m_seal = nullptr;
    DelayedStart m_delay;
};
