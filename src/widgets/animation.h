#pragma once

class QPropertyAnimation;
class QWidget;

/// Animated quantities at or below this are not drawn: no faint ghost of what is meant to be gone.
inline constexpr double kInvisible = 0.001;

/// Sets the function that asks the desktop whether its user wants no motion. Start-up does so,
/// because widgets know nothing of the system; without it the answer is no.
void setDesktopMotionQuery(bool (*query)());

/// True if the user wants no motion: the desktop says so, or, as not every desktop has such a
/// setting, the environment variable VARNEL_REDUCED_MOTION is 1. Both may change at any time.
[[nodiscard]] bool prefersReducedMotion();

/// Whether to animate in `widget`: the user wants motion and can see the widget.
[[nodiscard]] bool showsMotion(const QWidget *widget);

/// Starts the animation of a widget's property from its beginning. Where no motion is shown, or no
/// longer, it is at its end at once.
void playOnce(QPropertyAnimation &animation);

/// Runs `animation` from its property's present value to `target`, wherever it is just now.
void glideTo(QPropertyAnimation &animation, double target);
