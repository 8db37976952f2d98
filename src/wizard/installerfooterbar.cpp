#include "wizard/installerfooterbar.h"

#include "theme/stylesheets.h"
#include "theme/themed.h"
#include "widgets/themedbutton.h"
#include "wizard/windowshape.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kHeight = 48;
constexpr int kButtonHeight = 30;
constexpr char kVariantProperty[] = "insVariant";

QString buttonStyle(const QString &variant)
{
    if (variant == "danger"_L1) {
        // No hover rule: a destructive button does not light up under the pointer.
        return u"QPushButton{padding:0 18px;border-radius:8px;font-weight:600;background:@INS_RED;"
               "border:1px solid @INS_RED;color:#FFFFFF;}"
               "QPushButton:disabled{background:@INS_LINE2;border-color:@INS_LINE2;color:@INS_TX3;}"_s;
    }
    if (variant == "primary"_L1) {
        return u"QPushButton{padding:0 18px;border-radius:8px;font-weight:600;"
               "background:@INS_ACCENT;border:1px solid @INS_ACCENT;color:#FFFFFF;}"
               "QPushButton:hover{background:@INS_ACCENT_HOVER;border-color:@INS_ACCENT_HOVER;}"
               "QPushButton:disabled{background:@INS_LINE2;border-color:@INS_LINE2;color:@INS_TX3;}"_s;
    }
    return ghostButtonStyle() + u"QPushButton:disabled{color:@INS_TX3;}"_s;
}

} // namespace

InstallerFooterBar::InstallerFooterBar(QWidget *parent)
    : QWidget(parent), m_status(new QLabel(this)), m_buttonRow(new QHBoxLayout)
{
    setFixedHeight(kHeight);
    m_status->setTextFormat(Qt::PlainText);
    // Qt ignores fractions of a pixel in a style sheet, and the text would be as large as the
    // desktop's. 12 px is how it draws 11.5.
    QFont font = m_status->font();
    font.setPixelSize(12);
    m_status->setFont(font);
    setThemedStyleSheet(m_status, u"color:@INS_TX3;font-size:11.5px;"_s);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(18, 0, 18, 0);
    layout->addWidget(m_status);
    layout->addStretch();
    m_buttonRow->setSpacing(8);
    layout->addLayout(m_buttonRow);
    repaintOnThemeChange(this);
}

void InstallerFooterBar::setStatusText(const QString &text)
{
    m_status->setText(text);
}

QPushButton *InstallerFooterBar::addButton(const QString &text, bool primary, bool danger)
{
    auto *button = new ThemedButton(text, kFrameRadius, this);
    button->setFixedHeight(kButtonHeight);
    button->setProperty(kVariantProperty,
                        danger        ? u"danger"_s
                            : primary ? u"primary"_s
                                      : u"ghost"_s);
    if (primary || danger)
        button->setFocusToken(u"@INS_BG"_s);
    onThemeChange(button, [button] {
        button->setStyleSheet(themed(buttonStyle(button->property(kVariantProperty).toString())));
    });
    m_buttonRow->addWidget(button);
    button->show(); // now, not in the next turn of the event loop: it may be given the focus
    m_buttons.append(button);
    return button;
}

bool InstallerFooterBar::isPrimary(const QPushButton *button)
{
    return button->property(kVariantProperty) == "primary"_L1;
}

bool InstallerFooterBar::isDanger(const QPushButton *button)
{
    return button->property(kVariantProperty) == "danger"_L1;
}

void InstallerFooterBar::clear()
{
    for (QPushButton *button : std::as_const(m_buttons)) {
        // Deleted later, because its click may have called this.
        m_buttonRow->removeWidget(button);
        button->clearFocus(); // or hiding would hand the focus to whatever comes next in the window
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
}

void InstallerFooterBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintBar(painter, rect(), Qt::BottomEdge);
}
