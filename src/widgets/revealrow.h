#pragma once

#include "widgets/delayedstart.h"

#include <QPropertyAnimation>
#include <QWidget>

/// A painted row that fades in while it slides up into its place. Derived rows paint themselves as
/// they look at rest.
class RevealRow : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double reveal READ reveal WRITE setReveal)

public:
    /// `slide` is the way up in pixels. `text` is what assistive technology reads.
    RevealRow(int slide, const QString &text, QWidget *parent = nullptr);

    /// 0 hidden, 1 at rest.
    [[nodiscard]] double reveal() const { return m_reveal; }
    void setReveal(double reveal);

    /// Whether the row is shown or on its way to be.
    [[nodiscard]] bool isRevealed() const { return m_revealed; }
    /// Sends the row to its shown or hidden state from wherever it is; does nothing if it is there.
    void setRevealed(bool revealed);
    /// Shows the row after `delay`, counted anew by every call.
    void revealAfter(std::chrono::milliseconds delay);
    /// Hides the row at once, and for good if it was only to be shown later.
    void resetReveal();

protected:
    void paintEvent(QPaintEvent *event) override;
    virtual void paintRow(QPainter &painter) = 0;

private:
    void announce();
    void paintSharp(QPainter &painter);
    void paintFaded(QPainter &painter);

    int m_slide;
    double m_reveal = 0.0;
    bool m_revealed = false;
    QPropertyAnimation m_animation;
    DelayedStart m_delay;
};
