#pragma once

#include "widgets/onscreenwatcher.h"

#include <QColor>
#include <QList>
#include <QTimer>
#include <QWidget>

#include <vector>

/// Lies over a whole window, lets one burst of paper pieces fly and fade, and hides itself when the
/// last one is gone. Takes no mouse input, so the page beneath stays usable. The pieces
/// stand still while the window is hidden or minimised.
class ConfettiOverlay : public QWidget
{
    Q_OBJECT

public:
    explicit ConfettiOverlay(QWidget *parent);

    /// Throws a new burst from `origin` (in this widget's coordinates), in place of any still
    /// flying. Without colours, or where the user wants no motion, nothing happens.
    void burst(const QPointF &origin, const QList<QColor> &colours);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Piece
    {
        double x;
        double y;
        double vx; ///< px per tick
        double vy; ///< px per tick, downwards
        double width;
        double height;
        double rotation; ///< radians
        double spin; ///< radians per tick
        QColor colour;
        int age = 0; ///< ticks
    };

    void updateTimer();
    void tick();
    [[nodiscard]] double floor() const;

    std::vector<Piece> m_pieces;
    QTimer m_timer;
    OnScreenWatcher m_onScreen;
};
