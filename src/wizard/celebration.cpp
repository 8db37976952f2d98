#include "wizard/celebration.h"

#include "widgets/confettioverlay.h"
#include "widgets/sealcheck.h"

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto kConfettiDelay = 300ms;

const QList<QColor> &confettiColours()
{
    static const QList<QColor> colours { QColor(0x064cad), QColor(0xff3131), QColor(0x0a5ec9),
                                         QColor(0x545454), QColor(0xf3b23d), QColor(0x1f9d63) };
    return colours;
}

} // namespace

Celebration::Celebration(QWidget *window) : QObject(window), m_confetti(new ConfettiOverlay(window))
{
    m_confetti->lower();
    m_delay.setSingleShot(true);
    m_delay.setTimerType(Qt::PreciseTimer);
    m_delay.setInterval(kConfettiDelay);
    connect(&m_delay, &QTimer::timeout, this, &Celebration::burst);
}

void Celebration::start(SealCheck *seal)
{
    m_seal = seal;
    m_seal->play();
    m_delay.start();
}

void Celebration::stop()
{
    m_delay.stop();
}

void Celebration::burst()
{
    const QPointF centre = QRectF(m_seal->rect()).center();
    m_confetti->burst(m_confetti->mapFromGlobal(m_seal->mapToGlobal(centre)), confettiColours());
}
