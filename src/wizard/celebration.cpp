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

Celebration::Celebration(QWidget *window)
    : QObject(window), m_confetti(new ConfettiOverlay(window)), m_delay(window)
{
    m_confetti->lower();
    connect(&m_delay, &DelayedStart::due, this, &Celebration::burst);
}

void Celebration::start(SealCheck *seal)
{
    m_seal = seal;
    m_seal->play();
    m_delay.start(kConfettiDelay);
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
