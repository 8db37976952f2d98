#include "widgets/animation.h"

#include "widgets/onscreenwatcher.h"

#include <QPropertyAnimation>
#include <QWidget>

namespace {

bool (*g_askDesktop)() = [] { return false; };

/// The widget that the animation moves, or that has the effect that it moves.
QWidget *widgetOf(const QPropertyAnimation &animation)
{
    QObject *target = animation.targetObject();
    return qobject_cast<QWidget *>(target->isWidgetType() ? target : target->parent());
}

void end(QPropertyAnimation &animation)
{
    animation.setCurrentTime(animation.totalDuration());
}

/// Ends `animation` as soon as `widget` goes out of sight.
void endOutOfSight(QPropertyAnimation &animation, QWidget *widget)
{
    if (animation.findChild<OnScreenWatcher *>())
        return; // done before
    auto *watcher = new OnScreenWatcher(widget, &animation);
    QObject::connect(watcher, &OnScreenWatcher::changed, &animation, [&animation](bool onScreen) {
        if (!onScreen && animation.state() == QAbstractAnimation::Running)
            end(animation);
    });
}

} // namespace

void setDesktopMotionQuery(bool (*query)())
{
    g_askDesktop = query;
}

bool prefersReducedMotion()
{
    return qEnvironmentVariableIntValue("VARNEL_REDUCED_MOTION") == 1 || g_askDesktop();
}

bool showsMotion(const QWidget *widget)
{
    return !prefersReducedMotion() && !isOutOfSight(widget);
}

void playOnce(QPropertyAnimation &animation)
{
    QWidget *widget = widgetOf(animation);
    animation.stop();
    animation.start();
    endOutOfSight(animation, widget);
    if (!showsMotion(widget))
        end(animation);
}

void glideTo(QPropertyAnimation &animation, double target)
{
    animation.stop(); // while it runs, a new end would move the property at once
    animation.setEndValue(target);
    playOnce(animation);
}
