#include "pages/manualclock.h"

#include <QCoreApplication>

ManualClock::ManualClock()
{
    install();
}

ManualClock::~ManualClock()
{
    uninstall();
}

void ManualClock::pass(int milliseconds)
{
    // An animation joins the clock through the event loop, and in more than one step.
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    m_now += milliseconds;
    advanceAnimation();
}

void ManualClock::start()
{
    m_now = 0; // the animations count from the moment at which the first of them starts
    QAnimationDriver::start();
}
