#include "wizard/spokenfocus.h"

#include <QApplication>

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
    place->setFocus(Qt::OtherFocusReason);
}

void SpokenFocus::forget()
{
    if (m_place)
        m_place->setAccessibleDescription({});
    m_place = nullptr;
}
