#include "pages/pagelabels.h"

#include "pages/fittedlabel.h"
#include "theme/fonts.h"
#include "theme/themed.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QLabel *themedLabel(const QString &text, const QFont &font, const QString &styleSheet,
                    QWidget *page)
{
    auto *label = new FittedLabel(shortenFinding, page);
    label->setText(text);
    label->setFont(font);
    setThemedStyleSheet(label, styleSheet);
    return label;
}

} // namespace

QVBoxLayout *pageLayout(QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(22, 18, 22, 18);
    layout->setSpacing(0);
    return layout;
}

QLabel *addPageHead(QVBoxLayout *layout, const QString &title, const QString &body)
{
    QWidget *page = layout->parentWidget();
    layout->addWidget(pageTitleLabel(title, page));
    layout->addSpacing(5);
    QLabel *bodyLabel = pageBodyLabel(body, page);
    layout->addWidget(bodyLabel);
    return bodyLabel;
}

QLabel *layOutFinishPage(QWidget *page, QWidget *emblem, const QString &title)
{
    QVBoxLayout *layout = pageLayout(page);
    emblem->setFixedSize(emblem->sizeHint());
    layout->addWidget(emblem, 0, Qt::AlignLeft);
    layout->addSpacing(14);
    QLabel *body = addPageHead(layout, title, {});
    layout->addStretch();
    return body;
}

QLabel *pageTitleLabel(const QString &text, QWidget *page)
{
    QLabel *label = themedLabel(text, displayFont(18, QFont::DemiBold), u"color:@INS_TX;"_s, page);
    label->setWordWrap(true);
    return label;
}

QLabel *pageBodyLabel(const QString &text, QWidget *page)
{
    QFont font = page->font();
    font.setPixelSize(12);
    QLabel *label = themedLabel(text, font, u"color:@INS_TX2;"_s, page);
    label->setWordWrap(true);
    return label;
}

QLabel *pageCaptionLabel(const QString &text, QWidget *page)
{
    return themedLabel(text, monospacedFont(10), u"color:@INS_TX3;"_s, page);
}

QLabel *pageCallout(const QString &text, const QString &styleSheet, QWidget *page)
{
    // Here and not in the style sheet, where Qt ignores a size with a fraction.
    QFont font = page->font();
    font.setPixelSize(12);
    QLabel *label = themedLabel(text, font, styleSheet, page);
    label->setWordWrap(true);
    // A style sheet that sets the left border alone leaves the others to the native style, which
    // then draws all four. So the page says that there are none.
    label->setObjectName("callout"_L1);
    page->setStyleSheet(u"#callout{border:none;}"_s);
    return label;
}

QString literalHtml(const QString &text)
{
    // Rich text collapses consecutive blanks.
    return text.toHtmlEscaped().replace("  "_L1, u" \u00a0"_s);
}

QString textToolTip(const QString &text)
{
    return u"<p>%1</p>"_s.arg(literalHtml(withPathBreaks(text)));
}
