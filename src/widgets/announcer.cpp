#include "widgets/announcer.h"

#include "widgets/notification.h"
#include "widgets/spokentext.h"

#include <QAccessible>
#include <QWidget>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// How long a screen reader at its normal speed takes.
constexpr std::chrono::milliseconds kPerCharacter = 75ms;
constexpr std::chrono::milliseconds kShortestPause = 2s;

} // namespace

Announcer::Announcer(QWidget *window) : QObject(window), m_window(window)
{
    m_speaking.setSingleShot(true);
    connect(&m_speaking, &QTimer::timeout, this, &Announcer::sayNews);
}

void Announcer::start(const QString &spoken)
{
    m_isRunning = true;
    m_step = {};
    m_status = {};
    pauseFor(spoken);
}

void Announcer::stop()
{
    m_isRunning = false;
    m_speaking.stop();
}

void Announcer::tellStep(const QString &step)
{
    tell(m_step, step);
}

void Announcer::tellStatus(const QString &status)
{
    tell(m_status, status);
}

void Announcer::tell(Topic &topic, const QString &text)
{
    topic.latest = text;
    // Not before control returns to the event loop: the run may end in the same turn, and the focus
    // that moves then would interrupt what is said here.
    if (m_isRunning && !m_speaking.isActive())
        m_speaking.start(0ms);
}

void Announcer::sayNews()
{
    QStringList news;
    for (Topic *topic : { &m_step, &m_status }) {
        if (topic->latest != topic->said)
            news += topic->said = topic->latest;
    }
    const QString text = spokenText(news);
    if (text.isEmpty())
        return;
    m_text = text;
    QAccessibleEvent event(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
    notifyScreenReader(*m_window, text);
    pauseFor(text);
}

void Announcer::pauseFor(const QString &spoken)
{
    m_speaking.start(std::max(kShortestPause, kPerCharacter * int(spoken.size())));
}
