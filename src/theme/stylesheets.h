#pragma once

#include <QString>

/// Style sheets that several controls share. They are written with tokens, as setThemedStyleSheet()
/// and themed() take them.

/// Corner radius of panels and buttons in px.
inline constexpr int kFrameRadius = 8;

/// The declarations of a framed panel, without a selector. `padding` is as in a style sheet, such
/// as "0 11px"; `ink` is the token of its text.
[[nodiscard]] QString panelStyle(const QString &padding, const QString &ink);

/// The rules of a secondary button: framed, not filled.
[[nodiscard]] QString ghostButtonStyle();
