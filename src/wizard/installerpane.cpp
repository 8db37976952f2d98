#include "wizard/installerpane.h"

#include "theme/themed.h"
#include "widgets/animation.h"
#include "widgets/devicepixels.h"

#include <QGraphicsOpacityEffect>
#include <QLayout>
#include <QPainter>
#include <QPropertyAnimation>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSlide = 14; // px
constexpr int kIncomingDuration = 320; // ms
constexpr int kOutgoingDuration = 200; // ms

void addAnimation(QParallelAnimationGroup *group, QObject *target, const char *property,
                  int duration, const QVariant &from, const QVariant &to)
{
    auto *animation = new QPropertyAnimation(target, property, group);
    animation->setDuration(duration);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    animation->setStartValue(from);
    animation->setEndValue(to);
}

/// Painting through an effect makes Qt lay out the whole window first, hidden pages included, which
/// would delay the first frame of the entrance. So their layouts are disabled until they are shown.
void setLaidOut(QWidget *page, bool on)
{
    for (QLayout *layout : page->findChildren<QLayout *>())
        layout->setEnabled(on);
}

/// What `widget` and its children paint, one pixel for each device pixel. Painted where the widget
/// stands in its window: at a fractional ratio it looks a little different elsewhere.
QPixmap pictureOf(QWidget *widget)
{
    const QPoint offset = widget->mapTo(widget->window(), QPoint());
    const double ratio = widget->devicePixelRatioF();
    const QRectF place = widget->rect().translated(offset);
    const QRect pixels = QRectF(place.topLeft() * ratio, place.size() * ratio).toAlignedRect();
    QPixmap window(pixels.right() + 1, pixels.bottom() + 1);
    window.setDevicePixelRatio(ratio);
    window.fill(Qt::transparent);
    widget->render(&window, offset, {}, QWidget::DrawChildren);
    QPixmap picture = window.copy(pixels);
    picture.setDevicePixelRatio(1.0);
    return picture;
}

/// Fades out a picture of the page and its background that is taken when this is made.
class FrozenPageEffect : public QGraphicsOpacityEffect
{
public:
    explicit FrozenPageEffect(QWidget *page)
        : QGraphicsOpacityEffect(page),
          m_picture(pictureOf(page->parentWidget())),
          m_ratio(page->devicePixelRatioF())
    {
        setOpacity(1.0);
    }

protected:
    void draw(QPainter *painter) override
    {
        const QRect page = sourceBoundingRect().toRect();
        painter->save();
        painter->setOpacity(opacity());
        if (pixelRatio(*painter) == m_ratio)
            drawDevicePixels(*painter, devicePixels(*painter, page).place.topLeft(), m_picture);
        else
            painter->drawPixmap(page, m_picture);
        painter->restore();
    }

private:
    QPixmap m_picture;
    double m_ratio;
};

} // namespace

InstallerPane::InstallerPane(QWidget *parent) : QWidget(parent), m_onScreen(this)
{
    connect(&m_onScreen, &OnScreenWatcher::changed, this, [this](bool onScreen) {
        if (!onScreen)
            endTransition();
    });
    repaintOnThemeChange(this);
}

void InstallerPane::addPage(QWidget *page)
{
    page->setParent(this);
    page->setGeometry(rect());
    page->hide();
    setLaidOut(page, false);
    m_pages.append(page);
}

void InstallerPane::prepareToShow(const QWidget *page)
{
    endTransition();
    const bool goesOut = m_current && m_current != page && showsMotion(this);
    if (goesOut && !m_current->graphicsEffect()) // else its picture is taken already
        m_current->setGraphicsEffect(new FrozenPageEffect(m_current));
}

void InstallerPane::setCurrentPage(QWidget *page, bool animate)
{
    prepareToShow(page);
    setLaidOut(page, true);
    QWidget *previous = std::exchange(m_current, page);
    if (!animate || !previous || !showsMotion(this)) {
        m_outgoing = previous == page ? nullptr : previous;
        page->show();
        page->raise();
        settle();
        return;
    }

    m_transition = new QParallelAnimationGroup(this);
    if (previous != page) {
        m_outgoing = previous;
        takeOut(previous, m_transition);
    }
    bringIn(page, m_transition);
    connect(m_transition, &QParallelAnimationGroup::finished, this, &InstallerPane::settle);
    m_transition->start(QAbstractAnimation::DeleteWhenStopped);
}

void InstallerPane::bringIn(QWidget *page, QParallelAnimationGroup *transition)
{
    const QRect away = rect().translated(kSlide, 0);
    auto *effect = new QGraphicsOpacityEffect(page);
    effect->setOpacity(0.0);
    page->setGraphicsEffect(effect);
    addAnimation(transition, effect, "opacity", kIncomingDuration, 0.0, 1.0);
    page->setGeometry(away);
    page->show();
    page->raise();
    addAnimation(transition, page, "geometry", kIncomingDuration, away, rect());
}

void InstallerPane::takeOut(QWidget *page, QParallelAnimationGroup *transition)
{
    const QRect place = page->geometry();
    addAnimation(transition, page->graphicsEffect(), "opacity", kOutgoingDuration, 1.0, 0.0);
    addAnimation(transition, page, "geometry", kOutgoingDuration, place,
                 place.translated(-kSlide, 0));
}

void InstallerPane::endTransition()
{
    if (!m_transition)
        return;
    m_transition->disconnect(this);
    m_transition->stop();
    settle();
}

void InstallerPane::settle()
{
    m_transition.clear();
    if (QWidget *outgoing = std::exchange(m_outgoing, nullptr)) {
        outgoing->hide();
        outgoing->setGraphicsEffect(nullptr);
    }
    m_current->setGraphicsEffect(nullptr);
    m_current->setGeometry(rect());
}

void InstallerPane::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), themedColor(u"@INS_BG"_s));
}

void InstallerPane::resizeEvent(QResizeEvent *)
{
    for (QWidget *page : std::as_const(m_pages)) {
        if (!page->graphicsEffect())
            page->setGeometry(rect());
    }
}
