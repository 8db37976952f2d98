#pragma once

#include <QLabel>

/// Shows a path in one line. One that is too long loses its middle on screen, never a part of its
/// end, which may be the folder's own name; text() and the tool tip have it whole.
class PathLabel : public QLabel
{
    Q_OBJECT

public:
    explicit PathLabel(QWidget *parent = nullptr);

    void setPath(const QString &path);

protected:
    void paintEvent(QPaintEvent *event) override;
};
