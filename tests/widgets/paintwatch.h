#pragma once

#include <QObject>
#include <QRegion>

class QWidget;

/// Shows a widget and counts how often it is painted from then on.
class PaintWatch : public QObject
{
    Q_OBJECT

public:
    explicit PaintWatch(QWidget &widget);

    /// Whether the widget has been painted since the last call, or is so within some seconds.
    [[nodiscard]] bool seesRepaint();
    /// How often it has been painted once the event loop has nothing left to do.
    [[nodiscard]] int settled();
    /// What was painted of it the last time.
    [[nodiscard]] QRegion lastRegion() const { return m_lastRegion; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_paints = 0;
    int m_seen = 0;
    QRegion m_lastRegion;
};
