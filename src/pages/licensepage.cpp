#include "pages/licensepage.h"

#include "pages/licensetext.h"
#include "pages/pagelabels.h"
#include "theme/fonts.h"
#include "theme/stylesheets.h"
#include "theme/themed.h"
#include "widgets/focusring.h"
#include "widgets/radiooption.h"
#include "widgets/spokentext.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QPainter>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kViewHeight = 150;

/// The text takes the focus, for the keys that scroll it, and so needs a focus ring.
class LicenseView : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    bool event(QEvent *event) override
    {
        const bool handled = QPlainTextEdit::event(event);
        if (event->type() == QEvent::Paint) {
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing);
            m_focusRing.paint(painter, rect(), kFrameRadius, u"@INS_ACCENT"_s);
        }
        return handled;
    }

private:
    FocusRing m_focusRing { this };
};

QPlainTextEdit *licenseView(QWidget *page)
{
    auto *view = new LicenseView(page);
    view->setReadOnly(true);
    view->setTabChangesFocus(true);
    view->setFixedHeight(kViewHeight);
    view->setFrameShape(QFrame::NoFrame);
    view->setFont(monospacedFont(11));
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setAccessibleName(LicensePage::tr("License Agreement"));
    setThemedStyleSheet(
        view,
        u"QPlainTextEdit{%1}"_s.arg(panelStyle(u"12px 13px"_s, u"@INS_TX2"_s))
            + uR"(QScrollBar:vertical{background:transparent;width:10px;margin:6px 4px 6px 0;border:none;})"
              uR"(QScrollBar::handle:vertical{background:@INS_LINE2;border-radius:3px;min-height:28px;})"
              uR"(QScrollBar::handle:vertical:hover{background:@INS_TX3;})"
              uR"(QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height:0;border:none;background:none;})"
              uR"(QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background:none;})"
              uR"(QScrollBar:horizontal{height:0;background:transparent;})"_s);

    // With the bar off while it loads, a long text is laid out once and not once more for the bar.
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setPlainText(licenseText(QCoreApplication::applicationDirPath()));
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    return view;
}

} // namespace

LicensePage::LicensePage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("License Agreement"),
                tr("Please read the following important information before continuing."));
    layout->addSpacing(14);
    layout->addWidget(licenseView(this));
    layout->addSpacing(12);

    auto *decline = new RadioOption(tr("I do not accept the agreement"), this);
    m_accept = new RadioOption(tr("I accept the license agreement"), this);
    m_answers = new QButtonGroup(this);
    m_answers->addButton(decline);
    m_answers->addButton(m_accept);
    decline->setChecked(true);
    connect(m_accept, &QAbstractButton::toggled, this, &LicensePage::acceptedChanged);
    connect(this, &LicensePage::acceptedChanged, this, &LicensePage::completeChanged);
    layout->addWidget(decline);
    layout->addWidget(m_accept);
    layout->addStretch();
}

QWidget *LicensePage::firstUnanswered() const
{
    return m_answers->checkedButton();
}

QString LicensePage::spokenSummary() const
{
    return spokenText({ WizardPage::spokenSummary(), tr("Do you accept the license agreement?") });
}

bool LicensePage::isAccepted() const
{
    return m_accept->isChecked();
}
