#include "pages/layoutoutline.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpacerItem>

using namespace Qt::Literals::StringLiterals;

namespace {

QString describe(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return u"label: "_s + label->text();
    if (const auto *button = qobject_cast<const QPushButton *>(widget))
        return u"button: "_s + button->text();
    const QString name = QString::fromLatin1(widget->metaObject()->className());
    if (const auto *control = qobject_cast<const QAbstractButton *>(widget))
        return name + u": "_s + control->text();
    return name;
}

QString describe(QSpacerItem *spacer, bool vertical)
{
    const Qt::Orientation orientation = vertical ? Qt::Vertical : Qt::Horizontal;
    if (spacer->expandingDirections() & orientation)
        return u"stretch"_s;
    const QSize size = spacer->sizeHint();
    return u"gap %1"_s.arg(vertical ? size.height() : size.width());
}

QString alignmentOf(QLayoutItem *item)
{
    QString text;
    const Qt::Alignment alignment = item->alignment();
    if (alignment & Qt::AlignLeft)
        text += u", left"_s;
    if (alignment & Qt::AlignHCenter)
        text += u", centred"_s;
    if (alignment & Qt::AlignTop)
        text += u", top"_s;
    return text;
}

QString marginsOf(const QLayout *layout)
{
    const QMargins margins = layout->contentsMargins();
    return u"margins %1 %2 %3 %4"_s.arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom());
}

void outline(const QBoxLayout *layout, const QString &indent, QStringList &lines)
{
    const bool vertical = layout->direction() == QBoxLayout::TopToBottom;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        QString line;
        if (QSpacerItem *spacer = item->spacerItem()) {
            line = describe(spacer, vertical);
        } else if (const QWidget *widget = item->widget()) {
            line = describe(widget);
        } else {
            const auto *inner = qobject_cast<const QBoxLayout *>(item->layout());
            const bool column = inner->direction() == QBoxLayout::TopToBottom;
            line = u"%1, spacing %2"_s.arg(column ? u"column"_s : u"row"_s).arg(inner->spacing());
            if (!inner->contentsMargins().isNull())
                line += u", "_s + marginsOf(inner);
        }
        line += alignmentOf(item);
        if (layout->stretch(i) > 0)
            line += u", stretch %1"_s.arg(layout->stretch(i));
        lines.append(indent + line);
        if (const auto *inner = qobject_cast<const QBoxLayout *>(item->layout()))
            outline(inner, indent + u"  "_s, lines);
    }
}

} // namespace

QStringList layoutOutline(const QWidget *page)
{
    const auto *layout = qobject_cast<const QBoxLayout *>(page->layout());
    if (!layout)
        return {};
    QStringList lines { u"%1, spacing %2"_s.arg(marginsOf(layout)).arg(layout->spacing()) };
    outline(layout, {}, lines);
    return lines;
}

QList<QWidget *> layoutWidgets(const QLayout *layout)
{
    QList<QWidget *> widgets;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->widget())
            widgets.append(item->widget());
        else if (item->layout())
            widgets.append(layoutWidgets(item->layout()));
    }
    return widgets;
}
