#pragma once

class QString;
class QWindow;

/// Shows a run on the desktop: shutdown reason, sleep, task bar. This base class does nothing;
/// desktop_win.cpp implements it for Windows.
class Desktop
{
public:
    /// What a window's button on the task bar shows.
    enum class Button {
        Plain,
        Waiting, ///< for as long as there is no figure
        Progress,
        Failure,
    };

    virtual ~Desktop() = default;

    /// Sets the text that Windows shows for this window when the user shuts down during a run, and
    /// has this process asked before others. An empty text takes both back.
    virtual void setBlockReason(QWindow &window, const QString &reason);
    /// Keeps the computer from sleeping while `on`. The screen may still turn off.
    virtual void keepAwake(bool on);
    /// `fraction` is how far the run is, 0 to 1.
    virtual void showOnTaskBar(QWindow &window, Button button, double fraction);
};

/// The implementation for this system.
[[nodiscard]] Desktop &systemDesktop();
