#pragma once

#include <QList>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

/// The status text at the left, the buttons of the page at the right.
class InstallerFooterBar : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerFooterBar(QWidget *parent = nullptr);

    void setStatusText(const QString &text);

    /// Adds a button at the right of those there are; danger wins over primary. It is the footer's
    /// and goes with clear().
    QPushButton *addButton(const QString &text, bool primary, bool danger);
    /// Removes every button at once, also from within a click on one of them; the text stays.
    void clear();

    /// What a button of the footer was added as.
    [[nodiscard]] static bool isPrimary(const QPushButton *button);
    [[nodiscard]] static bool isDanger(const QPushButton *button);

    /// From left to right.
    [[nodiscard]] QList<QPushButton *> buttons() const { return m_buttons; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_status;
    QHBoxLayout *m_buttonRow;
    QList<QPushButton *> m_buttons;
};
