#pragma once

class QPropertyAnimation;
class QWidget;

/// Painted widgets draw nothing while an animated opacity or size is at or below this.
inline constexpr double kInvisible = 0.001;

/// Sets the function that asks the desktop whether its user wants no motion. Start-up does so,
/// because widgets know nothing of the system; without it the answer is no.
void setDesktopMotionQuery(bool (*query)());

/// True if the user wants no motion: the desktop says so, or, as not every desktop has such a
/// setting, the environment variable VARNEL_REDUCED_MOTION is 1. Both may change at any time.
[[nodiscard]] bool prefersReducedMotion();

/// Whether to animate in `widget`: the user wants motion and can see the widget.
[[nodiscard]] bool showsMotion(const QWidget *widget);

/// Starts the animation of a widget's property from its beginning. It jumps to its end where
/// showsMotion() is false, and as soon as the widget goes out of sight.
void playOnce(QPropertyAnimation &animation);

/// Animates the property of `animation`, which has no start value, from its present value to
/// `target`, also in the middle of another run.
void glideTo(QPropertyAnimation &animation, double target);
