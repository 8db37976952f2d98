#pragma once

#include "widgets/delayedstart.h"

#include <QPropertyAnimation>
#include <QWidget>

/// The round seal of success: a disc pops in, then a check mark draws itself. Paints nothing until
/// it is played.
class SealCheck : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double circleProgress READ circleProgress WRITE setCircleProgress)
    Q_PROPERTY(double checkProgress READ checkProgress WRITE setCheckProgress)

public:
    explicit SealCheck(QWidget *parent = nullptr);

    /// Opacity and scale of the disc, 0 to 1, above 1 while it overshoots.
    [[nodiscard]] double circleProgress() const { return m_circleProgress; }
    void setCircleProgress(double progress);

    /// Drawn fraction of the check mark, 0 to 1.
    [[nodiscard]] double checkProgress() const { return m_checkProgress; }
    void setCheckProgress(double progress);

    /// Plays the entrance from its beginning, also while one is playing.
    void play();

    [[nodiscard]] QSize sizeHint() const override { return { 46, 46 }; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_circleProgress = 0.0;
    double m_checkProgress = 0.0;
    QPropertyAnimation m_circleAnimation;
    QPropertyAnimation m_checkAnimation;
    DelayedStart m_checkDelay;
};
