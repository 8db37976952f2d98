#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Tells when a widget can be seen at all: shown, and its window not minimised. What moves for ever
/// rests meanwhile.
class OnScreenWatcher : public QObject
{
    Q_OBJECT

public:
    explicit OnScreenWatcher(QWidget *widget);

    [[nodiscard]] bool isOnScreen() const { return m_onScreen; }

Q_SIGNALS:
    /// Each time the answer changes.
    void changed(bool onScreen);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update(bool shown);

    QWidget *m_widget;
    QPointer<QWidget> m_window; ///< the one that is watched for being minimised
    bool m_onScreen = false;
};
