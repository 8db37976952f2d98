#include "widgets/themedbutton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Distance of the ring from the border, so that it can be seen on a filled button too.
constexpr double kRingGap = 2.0;

} // namespace

ThemedButton::ThemedButton(const QString &text, double radius, QWidget *parent)
    : QPushButton(text, parent), m_radius(radius), m_focusToken(u"@INS_ACCENT"_s)
{
    setCursor(Qt::PointingHandCursor);
    // Return presses the page's primary button, not the first button in the window.
    setAutoDefault(false);
}

void ThemedButton::setFocusToken(const QString &token)
{
    m_focusToken = token;
    update();
}

// Without this, the native style draws its own focus frame beside the ring.
void ThemedButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    option->state &= ~QStyle::State_HasFocus;
}

void ThemedButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Ignore the second click of a double click: it would press the button of the next page that
    // has appeared in the same place.
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
