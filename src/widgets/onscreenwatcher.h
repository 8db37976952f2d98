#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Whether the window of `widget` is minimised or has been hidden. One that is yet to be shown is
/// not out of sight: what starts in it is meant for its first moment on screen.
[[nodiscard]] bool isOutOfSight(const QWidget *widget);

/// Tells when a widget can be seen at all: shown, and its window not minimised. What moves rests
/// meanwhile.
class OnScreenWatcher : public QObject
{
    Q_OBJECT

public:
    /// Belongs to `widget` unless it is given another parent.
    explicit OnScreenWatcher(QWidget *widget, QObject *parent = nullptr);

    [[nodiscard]] bool isOnScreen() const { return m_onScreen; }

Q_SIGNALS:
    /// Each time the answer changes.
    void changed(bool onScreen);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update(bool shown);

    QPointer<QWidget> m_widget;
    QPointer<QWidget> m_window; ///< the one that is watched for being minimised
    bool m_onScreen = false;
};
