#pragma once

#include "widgets/delayedstart.h"

#include <QPropertyAnimation>
#include <QWidget>

/// A painted row that fades in while it slides up into its place. Derived classes paint the row as
/// it looks at rest.
class RevealRow : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double reveal READ reveal WRITE setReveal)

public:
    /// `slide` is how far the row moves up, in px. `text` is its name for assistive technology.
    RevealRow(int slide, const QString &text, QWidget *parent = nullptr);

    /// 0 invisible, 1 at rest.
    [[nodiscard]] double reveal() const { return m_reveal; }
    void setReveal(double reveal);

    /// Whether the row is shown or fading in.
    [[nodiscard]] bool isRevealed() const { return m_revealed; }
    /// Fades the row in or out, from the state that it is in.
    void setRevealed(bool revealed);
    /// Fades the row in after `delay`; another call starts the delay again.
    void revealAfter(std::chrono::milliseconds delay);
    /// Hides the row at once and cancels a delay.
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
