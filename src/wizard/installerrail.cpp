#include "wizard/installerrail.h"

#include "product/product.h"
#include "theme/fonts.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/hairline.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 196;
constexpr int kMargin = 20;
constexpr int kLineWidth = 1;

/// Lays the mark out like anything else, but as wide as the rail up to its line: the parts of the
/// mark come in from there, and its own edges would cut them off on their way.
class MarkItem : public QWidgetItem
{
public:
    explicit MarkItem(AnimatedMark *mark) : QWidgetItem(mark)
    {
        setAlignment(Qt::AlignHCenter);
        const int margin = (kWidth - mark->sizeHint().width()) / 2;
        mark->setContentsMargins(margin, 0, margin - kLineWidth, 0);
        mark->setFixedHeight(mark->sizeHint().height());
    }

    void setGeometry(const QRect &rect) override
    {
        widget()->setGeometry(0, rect.top(), kWidth - kLineWidth, rect.height());
    }
};

/// The product's name, its first word in the accent colour.
QString wordmark()
{
    const QString name = Product::kName.toString();
    return u"<span style=\"color:@INS_ACCENT;\">%1</span> <span style=\"color:@INS_TX;\">%2</span>"_s
        .arg(name.section(u' ', 0, 0), name.section(u' ', 1));
}

} // namespace

InstallerRail::InstallerRail(QWidget *parent)
    : QWidget(parent),
      m_mark(new AnimatedMark(this)),
      m_wordmark(new QLabel(this)),
      m_versionLine(new QLabel(u"%1 · %2"_s.arg(Product::kVersion, Product::kRequiredSpace), this)),
      m_legal(new QLabel(this))
{
    setFixedWidth(kWidth);
    m_wordmark->setTextFormat(Qt::RichText);
    m_legal->setTextFormat(Qt::RichText);
    m_legal->setWordWrap(true);
    for (QLabel *label : { m_wordmark, m_versionLine, m_legal })
        label->setAlignment(Qt::AlignCenter);

    auto *block = new QVBoxLayout;
    block->setContentsMargins({});
    block->setSpacing(0);
    block->addItem(new MarkItem(m_mark));
    block->addSpacing(14);
    block->addWidget(m_wordmark);
    block->addSpacing(5);
    block->addWidget(m_versionLine);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addLayout(block);
    layout->addStretch();
    layout->addWidget(m_legal);

    onThemeChange(this, [this] { restyle(); });
    // After the style, so that the text is laid out once.
    m_legal->ensurePolished();
    m_legal->setText(
        u"%1<br>%2"_s.arg(Product::kPublisherNotice, tr("Proprietary and confidential")));
}

void InstallerRail::restyle()
{
    m_wordmark->setFont(displayFont(14, QFont::Bold));
    m_wordmark->setText(themed(wordmark()));
    m_versionLine->setFont(monospacedFont(10));
    m_versionLine->setStyleSheet(themed(u"color:@INS_TX3;"_s));
    m_legal->setStyleSheet(themed(u"color:@INS_TX3;font-size:10px;"_s));
    update();
}

void InstallerRail::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), themedColor(u"@INS_RAIL"_s));
    paintHairline(painter, rect(), Qt::RightEdge, themedColor(u"@INS_LINE"_s));
}
