#include "pages/pagetext.h"

#include "theme/thememanager.h"

#include <QLabel>
#include <QLayout>
#include <QTextDocument>

QString longWord()
{
    return QString(200, u'm');
}

QString coloured(const QString &text, const QStringList &tokens)
{
    QString result = text;
    for (qsizetype i = 0; i < tokens.size(); ++i) {
        const QString colour = ThemeManager::instance().color(tokens[i]);
        Q_ASSERT(colour.startsWith(u'#'));
        result.replace(u'%' + QString::number(i + 1), colour);
    }
    return result;
}

QLabel *labelOf(const QWidget *page, const QString &text)
{
    for (QLabel *label : page->findChildren<QLabel *>()) {
        if (label->text() == text)
            return label;
    }
    return nullptr;
}

QString shownText(const QLabel *label)
{
    if (label->textFormat() != Qt::RichText)
        return label->text();
    QTextDocument document;
    document.setHtml(label->text());
    return document.toPlainText();
}

bool fitsWindow(QWidget *page)
{
    QWidget window;
    window.resize(kPageSize);
    page->setParent(&window);
    page->setGeometry(window.rect());
    window.show();
    page->layout()->activate();
    const QRect room = page->rect().marginsRemoved(page->layout()->contentsMargins());
    bool fits = page->size() == kPageSize;
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        const QRect place(widget->mapTo(page, QPoint()), widget->size());
        if (widget->isVisible() && !room.contains(place)) {
            qInfo() << widget << "leaves the page:" << place;
            fits = false;
        }
    }
    page->setParent(nullptr);
    return fits;
}
