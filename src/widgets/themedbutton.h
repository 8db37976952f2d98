#pragma once

#include "widgets/focusring.h"

#include <QPushButton>

/// A push button with a focus ring for the keyboard. A style sheet cannot draw that: it does not
/// know whether the focus came by keyboard or by a click.
class ThemedButton : public QPushButton
{
    Q_OBJECT

public:
    /// `radius` is the corner radius of the button's style sheet, which the focus ring follows.
    ThemedButton(const QString &text, double radius, QWidget *parent = nullptr);

    /// Colour token of the focus ring. The default is the accent colour, which cannot be seen on a
    /// button that is filled with it.
    void setFocusToken(const QString &token);

protected:
    void initStyleOption(QStyleOptionButton *option) const override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double m_radius;
    QString m_focusToken;
    FocusRing m_focusRing { this };
};
