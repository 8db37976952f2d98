#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Gives the focus together with something to say: a screen reader says what takes the focus, with
/// its description, and nothing of the rest of a page. The description is there until the widget
/// loses the focus, so that it is read once.
class SpokenFocus : public QObject
{
    Q_OBJECT

public:
    explicit SpokenFocus(QObject *parent);

    /// `spoken` is plain text; empty where everything has been said.
    void give(QWidget *place, const QString &spoken);

private:
    void forget();

    QPointer<QWidget> m_place;
};
