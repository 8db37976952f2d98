#pragma once

#include "widgets/selectioncontrol.h"

/// A square check box whose tick fades in.
class ToggleCheckbox : public SelectionControl
{
    Q_OBJECT
    Q_PROPERTY(double checkProgress READ checkProgress WRITE setCheckProgress)

public:
    explicit ToggleCheckbox(const QString &text, QWidget *parent = nullptr);

    /// How far the tick has faded in, 0 to 1. For painting only: isChecked() is the state.
    [[nodiscard]] double checkProgress() const { return m_checkProgress; }
    void setCheckProgress(double progress);

protected:
    void paintIndicator(QPainter &painter, const QRectF &box) override;

private:
    double m_checkProgress = 0.0;
    QPropertyAnimation m_checkAnimation;
};
