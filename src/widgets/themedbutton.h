#pragma once

#include "widgets/focusring.h"

#include <QPushButton>

/// A push button styled by tokens that also shows keyboard focus, which its style sheet leaves out.
class ThemedButton : public QPushButton
{
    Q_OBJECT

public:
    /// `radius` is the corner radius of the button's style, for the focus ring to follow.
    ThemedButton(const QString &text, double radius, QWidget *parent = nullptr);

    /// Colour token of the focus ring; on a button that is filled with the accent it takes another.
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
