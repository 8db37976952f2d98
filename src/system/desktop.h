#pragma once

class QString;
class QWindow;

/// What the desktop is told of a run. Only Windows has all of it; elsewhere, as with this class
/// itself, nothing happens.
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

    /// What Windows shows beside the window's title when the user wants to shut it down meanwhile.
    /// Empty takes it back.
    virtual void setBlockReason(QWindow &window, const QString &reason);
    /// Whether the computer stays awake though nobody uses it. The screen may go dark.
    virtual void keepAwake(bool on);
    /// `fraction` is how far the run is, 0 to 1.
    virtual void showOnTaskBar(QWindow &window, Button button, double fraction);
};

/// The one of this system.
[[nodiscard]] Desktop &systemDesktop();
