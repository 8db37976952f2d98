#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Gives the focus together with something to say: a screen reader says what takes the focus, with
/// its description or its help text, and nothing of the rest of a page. Both are there until the
/// widget loses the focus, so that it is read once. Of the two, Orca reads the description, and
/// Narrator the help text.
class SpokenFocus : public QObject
{
    Q_OBJECT

public:
    explicit SpokenFocus(QObject *parent);

    /// `spoken` is plain text; empty where everything has been said.
    void give(QWidget *place, const QString &spoken);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void forget();

    QPointer<QWidget> m_place;
};
