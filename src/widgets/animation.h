#pragma once

class QPropertyAnimation;
class QWidget;

/// Animated quantities at or below this are not drawn: no faint ghost of what is meant to be gone.
inline constexpr double kInvisible = 0.001;

/// Whether motion in `widget` is worth its while: the user wants it and can see it.
[[nodiscard]] bool showsMotion(const QWidget *widget);

/// Starts the animation of a widget's property from its beginning. Where no motion is shown, or no
/// longer, it is at its end at once.
void playOnce(QPropertyAnimation &animation);

/// Runs `animation` from its property's present value to `target`, wherever it is just now.
void glideTo(QPropertyAnimation &animation, double target);
