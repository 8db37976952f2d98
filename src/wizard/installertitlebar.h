#pragma once

#include <QPoint>
#include <QTimer>
#include <QWidget>

#include <optional>

class QLabel;

/// Title, minimise and close button of the frameless window, and the handle to drag it by.
class InstallerTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerTitleBar(const QString &title, QWidget *parent = nullptr);

    void setTitle(const QString &title);

Q_SIGNALS:
    /// Once per press of the button.
    void minimizeRequested();
    /// Once per press of the button.
    void closeRequested();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void leaveDragToSystem();

    QLabel *m_title;
    /// From the window's frame to where the bar was pressed; none while it is not dragged.
    std::optional<QPoint> m_dragOffset;
    QTimer m_systemMove; ///< until the system is asked to go on with the drag
};
