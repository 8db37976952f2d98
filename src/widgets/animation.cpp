#include "widgets/animation.h"

#include "system/machine.h"

#include <QPropertyAnimation>

void playOnce(QAbstractAnimation &animation)
{
    animation.stop();
    animation.start();
    if (prefersReducedMotion())
        animation.setCurrentTime(animation.totalDuration());
}

void glideTo(QPropertyAnimation &animation, double target)
{
    animation.stop();
    animation.setStartValue(animation.targetObject()->property(animation.propertyName()));
    animation.setEndValue(target);
    playOnce(animation);
}
