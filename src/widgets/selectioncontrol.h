#pragma once

#include "widgets/focusring.h"

#include <QAbstractButton>
#include <QPropertyAnimation>

/// Base of the painted radio option and check box: a full-width row with a plate that fades in
/// under the pointer, a 16 px indicator at the left and the text beside it.
class SelectionControl : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(double hoverProgress READ hoverProgress WRITE setHoverProgress)

public:
    [[nodiscard]] double hoverProgress() const { return m_hoverProgress; }
    void setHoverProgress(double progress);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    /// `verticalRoom` is added to the text's height.
    SelectionControl(const QString &text, int verticalRoom, QWidget *parent);
    /// Lets `selection`, which animates a property of the derived class, follow the checked state.
    void followCheckedState(QPropertyAnimation &selection);

    virtual void paintIndicator(QPainter &painter, const QRectF &box) = 0;

    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    int m_verticalRoom;
    double m_hoverProgress = 0.0;
    QPropertyAnimation m_hoverAnimation;
    FocusRing m_focusRing { this };
};
