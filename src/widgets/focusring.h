#pragma once

#include <QObject>

class QFocusEvent;
class QPainter;
class QRectF;
class QWidget;

/// Shows that a control has the focus, if it got it by the keyboard; after a click no ring is
/// needed. A member of the control, which calls paint() at the end of its own painting.
class FocusRing : public QObject
{
public:
    explicit FocusRing(QWidget *control);

    /// Paints the ring just inside `rect`, if it is to be seen, in a colour token of the theme.
    void paint(QPainter &painter, const QRectF &rect, double radius, const QString &token) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update(const QFocusEvent &event);

    QWidget *m_control;
    bool m_byKeyboard = false;
};
