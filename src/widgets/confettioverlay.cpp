#include "widgets/confettioverlay.h"

#include "widgets/animation.h"

#include <QEvent>
#include <QPainter>
#include <QRandomGenerator>

#include <chrono>
#include <cmath>
#include <numbers>

using namespace std::chrono_literals;

namespace {

constexpr auto kTick = 16ms;
constexpr int kPieces = 110;
constexpr int kLifetime = 130; // ticks

constexpr double kAirDrag = 0.995; // of the sideways speed, per tick
constexpr double kGravity = 0.2; // px per tick, per tick

/// A piece that is this far below the overlay, in px, has gone.
constexpr double kFallOut = 40.0;

double uniform()
{
    return QRandomGenerator::global()->generateDouble();
}

} // namespace

ConfettiOverlay::ConfettiOverlay(QWidget *parent) : QWidget(parent), m_timer(this), m_onScreen(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_TranslucentBackground);
    m_timer.setInterval(kTick);
    connect(&m_timer, &QTimer::timeout, this, &ConfettiOverlay::tick);
    connect(&m_onScreen, &OnScreenWatcher::changed, this, &ConfettiOverlay::updateTimer);
    parent->installEventFilter(this);
    setGeometry(parent->rect());
    hide();
}

bool ConfettiOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void ConfettiOverlay::burst(const QPointF &origin, const QList<QColor> &colours)
{
    if (colours.isEmpty() || prefersReducedMotion())
        return;
    m_pieces.clear();
    m_pieces.reserve(kPieces);
    for (int i = 0; i < kPieces; ++i) {
        const double angle = uniform() * 2.0 * std::numbers::pi;
        const double speed = 2.5 + 8.0 * uniform();
        // Braced initialisation evaluates in order, and so draws the random numbers in order.
        m_pieces.push_back({
            .x = origin.x(),
            .y = origin.y(),
            .vx = std::cos(angle) * speed * 1.3,
            .vy = std::sin(angle) * speed - 4.2,
            .width = 4.0 + 5.0 * uniform(),
            .height = 3.0 + 4.0 * uniform(),
            .rotation = 6.28 * uniform(),
            .spin = (uniform() - 0.5) * 0.34,
            .colour = colours[QRandomGenerator::global()->bounded(colours.size())],
        });
    }
    raise();
    show();
    updateTimer();
}

void ConfettiOverlay::updateTimer()
{
    if (m_pieces.empty() || isOutOfSight(this))
        m_timer.stop();
    else
        m_timer.start();
}

double ConfettiOverlay::floor() const
{
    return height() + kFallOut;
}

void ConfettiOverlay::tick()
{
    for (Piece &piece : m_pieces)
        piece.rotation += piece.spin;
    bool anyAlive = false;
    for (Piece &piece : m_pieces) {
        piece.vx *= kAirDrag;
        piece.vy += kGravity;
        piece.y += piece.vy;
        piece.x += piece.vx;
        ++piece.age;
        anyAlive = anyAlive || (piece.age < kLifetime && piece.y < floor());
    }
    update();
    if (!anyAlive) {
        m_pieces = {};
        updateTimer();
        hide();
    }
}

void ConfettiOverlay::paintEvent(QPaintEvent *)
{
    if (m_pieces.empty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform origin = painter.worldTransform();
    for (const Piece &piece : m_pieces) {
        const double opacity = 1.0 - double(piece.age) / kLifetime;
        if (opacity <= 0.0 || piece.y > floor())
            continue;
        // Setting both is three times as fast as saving and restoring the painter.
        QTransform place = origin;
        place.translate(piece.x, piece.y);
        place.rotateRadians(piece.rotation);
        painter.setWorldTransform(place);
        painter.setOpacity(opacity);
        painter.fillRect(QRectF(-piece.width / 2, -piece.height / 2, piece.width, piece.height),
                         piece.colour);
    }
}
