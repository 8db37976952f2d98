#include "wizard/installertitlebar.h"

#include "theme/themed.h"
#include "widgets/themedbutton.h"
#include "wizard/windowshape.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kHeight = 36;
constexpr QSize kButtonSize(40, 35);

/// From the first move of a drag until the system takes it over. A window manager that is asked
/// just when the button is released would move the window until the next click.
constexpr auto kSystemMoveDelay = 20ms;

const QString kButtonStyle =
    u"QPushButton{border:none;background:transparent;color:@INS_TX2;font-size:12px;}"
    "QPushButton:hover{background:@INS_LINE;color:@INS_TX;}"_s;

/// Red and white are no tokens: this button means the same in every theme.
const QString kCloseButtonStyle = kButtonStyle
    + u"QPushButton#insCloseBtn:hover{background:#D63B32;color:#FFFFFF;"
      "border-top-right-radius:%1px;}"_s.arg(kCornerRadius);

ThemedButton *titleButton(const QString &sign, const QString &name, const QString &style,
                          QWidget *bar)
{
    // The focus ring of the last one keeps inside the window's corner; the others look like it.
    auto *button = new ThemedButton(sign, kCornerRadius, bar);
    button->setAccessibleName(name);
    button->setFixedSize(kButtonSize);
    setThemedStyleSheet(button, style);
    return button;
}

} // namespace

InstallerTitleBar::InstallerTitleBar(const QString &title, QWidget *parent)
    : QWidget(parent), m_title(new QLabel(title, this))
{
    setFixedHeight(kHeight);
    QFont font = m_title->font();
    font.setPixelSize(12);
    font.setWeight(QFont::Medium);
    m_title->setFont(font);
    setThemedStyleSheet(m_title, u"color:@INS_TX;font-size:12px;background:transparent;"_s);

    auto *minimize = titleButton(u"–"_s, tr("Minimize"), kButtonStyle, this);
    auto *close = titleButton(u"✕"_s, tr("Close"), kCloseButtonStyle, this);
    close->setObjectName("insCloseBtn"_L1);
    connect(minimize, &QPushButton::clicked, this, &InstallerTitleBar::minimizeRequested);
    connect(close, &QPushButton::clicked, this, &InstallerTitleBar::closeRequested);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(14, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_title);
    layout->addStretch();
    layout->addWidget(minimize);
    layout->addWidget(close);
    repaintOnThemeChange(this);

    m_systemMove.setSingleShot(true);
    m_systemMove.setInterval(kSystemMoveDelay);
    connect(&m_systemMove, &QTimer::timeout, this, &InstallerTitleBar::leaveDragToSystem);
}

void InstallerTitleBar::setTitle(const QString &title)
{
    m_title->setText(title);
}

void InstallerTitleBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_dragOffset = event->globalPosition().toPoint() - window()->frameGeometry().topLeft();
    event->accept();
}

void InstallerTitleBar::mouseMoveEvent(QMouseEvent *event)
{
    // Moves come from the buttons too, when they are pressed and the pointer slides off them.
    if (!m_dragOffset || !(event->buttons() & Qt::LeftButton))
        return QWidget::mouseMoveEvent(event);
    window()->move(event->globalPosition().toPoint() - *m_dragOffset);
    if (!m_systemMove.isActive())
        m_systemMove.start();
    event->accept();
}

void InstallerTitleBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    m_dragOffset.reset();
    m_systemMove.stop();
    event->accept();
}

// Only the system moves a window to a screen of another scale without a jump. We may get no release
// event then.
void InstallerTitleBar::leaveDragToSystem()
{
    if (window()->windowHandle()->startSystemMove())
        m_dragOffset.reset();
}

void InstallerTitleBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintBar(painter, rect(), Qt::TopEdge);
}
