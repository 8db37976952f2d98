#pragma once

#include <QTimer>

/// Keeps a key that was on its way when something unexpected appeared from answering it unread: for
/// half a second Enter, Space and Escape do nothing. Mouse and assistive technology are not
/// delayed.
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
