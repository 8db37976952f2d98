#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Whether the window of `widget` is minimised or has been hidden. False before it is first shown:
/// animations that start then are to be seen when it comes.
[[nodiscard]] bool isOutOfSight(const QWidget *widget);

/// Tells whether a widget can be seen: it is shown, and its window is not minimised. Animations
/// need not run otherwise.
class OnScreenWatcher : public QObject
{
    Q_OBJECT

public:
    /// A child of `widget` unless `parent` is given.
    explicit OnScreenWatcher(QWidget *widget, QObject *parent = nullptr);

    [[nodiscard]] bool isOnScreen() const { return m_onScreen; }

Q_SIGNALS:
    /// Each time isOnScreen() changes.
    void changed(bool onScreen);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update(bool shown);

    QPointer<QWidget> m_widget;
    QPointer<QWidget> m_window; ///< the one whose state is watched
    bool m_onScreen = false;
};
