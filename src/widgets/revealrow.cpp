#include "widgets/revealrow.h"

#include "theme/themed.h"
#include "widgets/animation.h"
#include "widgets/devicepixels.h"

#include <QAccessible>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace {

constexpr int kRevealDuration = 300; // ms

} // namespace

RevealRow::RevealRow(int slide, const QString &text, QWidget *parent)
    : QWidget(parent), m_slide(slide), m_animation(this, "reveal"), m_delay(this)
{
    setAccessibleName(text);
    m_animation.setDuration(kRevealDuration);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_delay, &DelayedStart::due, this, [this] { setRevealed(true); });
    repaintOnThemeChange(this);
}

void RevealRow::setReveal(double reveal)
{
    m_reveal = reveal;
    update();
}

void RevealRow::setRevealed(bool revealed)
{
    if (m_revealed == revealed)
        return;
    m_revealed = revealed;
    announce();
    glideTo(m_animation, revealed ? 1.0 : 0.0);
}

void RevealRow::revealAfter(std::chrono::milliseconds delay)
{
    m_delay.start(delay);
}

void RevealRow::resetReveal()
{
    m_delay.stop();
    m_animation.stop();
    setReveal(0.0);
    if (std::exchange(m_revealed, false))
        announce();
}

// For assistive technology the row is visible as soon as it begins to fade in.
void RevealRow::announce()
{
    QAccessibleEvent event(this, m_revealed ? QAccessible::ObjectShow : QAccessible::ObjectHide);
    QAccessible::updateAccessibility(&event);
}

void RevealRow::paintEvent(QPaintEvent *)
{
    if (m_reveal <= kInvisible)
        return;
    QPainter painter(this);
    if (m_reveal < 1.0) {
        painter.translate(0.0, (1.0 - m_reveal) * m_slide);
        paintFaded(painter);
    } else {
        paintSharp(painter);
    }
}

void RevealRow::paintSharp(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    paintRow(painter);
}

// Fades a picture of the row: with an opacity on the painter, shapes that overlap would show
// through each other. It is also much faster, because Qt draws text with an opacity as a list of
// spans for each letter, and hands long lists to other threads.
void RevealRow::paintFaded(QPainter &painter)
{
    const DevicePixels pixels = devicePixels(painter, rect());
    QPixmap picture(pixels.place.size());
    picture.fill(Qt::transparent);
    QPainter picturePainter(&picture);
    picturePainter.setFont(painter.font());
    picturePainter.setPen(painter.pen());
    picturePainter.setLayoutDirection(painter.layoutDirection());
    picturePainter.setTransform(pixels.transform);
    paintSharp(picturePainter);
    picturePainter.end();
    painter.setOpacity(m_reveal);
    drawDevicePixels(painter, pixels.place.topLeft(), picture);
}
