#pragma once

#include <QTimer>

/// Ignores Enter, Space and Escape for half a second after start(), so that a key that was pressed
/// before something unexpected appeared does not close it unread. Mouse and assistive technology
/// are not delayed.
class KeyGuard : public QObject
{
    Q_OBJECT

public:
    explicit KeyGuard(QObject *parent);

    void start();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTimer m_timer { this };
};
