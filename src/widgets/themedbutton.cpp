#include "widgets/themedbutton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The ring keeps this far inside the border, so that it shows on a filled button too.
constexpr double kRingGap = 2.0;

} // namespace

ThemedButton::ThemedButton(const QString &text, double radius, QWidget *parent)
    : QPushButton(text, parent), m_radius(radius), m_focusToken(u"@INS_ACCENT"_s)
{
    setCursor(Qt::PointingHandCursor);
    // Return is the page's business, not the first button's in the window.
    setAutoDefault(false);
}

void ThemedButton::setFocusToken(const QString &token)
{
    m_focusToken = token;
    update();
}

// Keeps the native style from adding a focus frame of its own to the ring.
void ThemedButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    option->state &= ~QStyle::State_HasFocus;
}

void ThemedButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The second click was meant for what was here at the first: a new page's button must not take
    // it for its own and start what nobody has read about.
    event->accept();
}

void ThemedButton::paintEvent(QPaintEvent *event)
{
    QPushButton::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(kRingGap, kRingGap, -kRingGap, -kRingGap);
    m_focusRing.paint(painter, ring, qMax(m_radius - kRingGap, 0.0), m_focusToken);
}
