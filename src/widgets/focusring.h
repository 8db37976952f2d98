#pragma once

#include <QRectF>
#include <QString>

class QFocusEvent;
class QPainter;

/// Shows where the keyboard is, and only while it is the keyboard that moves the focus: a click
/// needs no pointer to itself. A member of the control that draws it.
class FocusRing
{
public:
    /// Takes note of how the focus came or that it went.
    void update(const QFocusEvent &event);
    /// Paints the ring just inside `rect`, if it is to be seen, in a colour token of the theme.
    void paint(QPainter &painter, const QRectF &rect, double radius, const QString &token) const;

private:
    bool m_visible = false;
};
