#pragma once

#include <QWidget>

class QButtonGroup;
class RadioOption;

/// Shows the licence and asks whether it is accepted; it is not until the user says so.
class LicensePage : public QWidget
{
    Q_OBJECT

public:
    explicit LicensePage(QWidget *parent = nullptr);

    [[nodiscard]] bool isAccepted() const;
    /// Gives the keyboard to the answer that is chosen now.
    void focusAnswer();

Q_SIGNALS:
    /// Each time the answer changes, and only then.
    void acceptedChanged(bool accepted);

private:
    QButtonGroup *m_answers;
    RadioOption *m_accept;
};
