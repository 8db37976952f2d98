#pragma once

#include <QWidget>

class AnimatedMark;
class QLabel;

/// The panel at the left: mark, name, version and copyright.
class InstallerRail : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerRail(QWidget *parent = nullptr);

    [[nodiscard]] AnimatedMark *mark() const { return m_mark; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void restyle();

    AnimatedMark *m_mark;
    QLabel *m_wordmark;
    QLabel *m_versionLine;
    QLabel *m_legal;
};
