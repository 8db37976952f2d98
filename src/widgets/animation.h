#pragma once

class QAbstractAnimation;
class QPropertyAnimation;

/// Animated quantities at or below this are not drawn: no faint ghost of what is meant to be gone.
inline constexpr double kInvisible = 0.001;

/// Starts `animation` from its beginning; where the user wants no motion it is at its end at once.
void playOnce(QAbstractAnimation &animation);

/// Runs `animation` from its property's present value to `target`, wherever it is just now.
void glideTo(QPropertyAnimation &animation, double target);
