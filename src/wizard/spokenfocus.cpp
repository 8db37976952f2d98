#include "wizard/spokenfocus.h"

#include <QApplication>
#include <QKeyEvent>

SpokenFocus::SpokenFocus(QObject *parent) : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *left) {
        if (left && left == m_place)
            forget();
    });
}

void SpokenFocus::give(QWidget *place, const QString &spoken)
{
    forget(); // a window that is not active changes its focus without a word
    m_place = place;
    place->setAccessibleDescription(spoken);
    place->setWhatsThis(spoken);
    place->installEventFilter(this);
    place->setFocus(Qt::OtherFocusReason);
}

void SpokenFocus::forget()
{
    if (m_place) {
        m_place->setAccessibleDescription({});
        m_place->setWhatsThis({});
        m_place->removeEventFilter(this);
    }
    m_place = nullptr;
}

bool SpokenFocus::eventFilter(QObject *, QEvent *event)
{
    // Qt would show the help text for Shift+F1, and take a path in it for markup.
    return event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F1;
}
