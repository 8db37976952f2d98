#pragma once

#include "widgets/selectioncontrol.h"

/// A round option, one of several in an exclusive QButtonGroup.
class RadioOption : public SelectionControl
{
    Q_OBJECT
    Q_PROPERTY(double selectProgress READ selectProgress WRITE setSelectProgress)

public:
    explicit RadioOption(const QString &text, QWidget *parent = nullptr);

    /// How far the dot has grown, 0 to 1. For painting only: isChecked() is the state.
    [[nodiscard]] double selectProgress() const { return m_selectProgress; }
    void setSelectProgress(double progress);

protected:
    void paintIndicator(QPainter &painter, const QRectF &box) override;

private:
    double m_selectProgress = 0.0;
    QPropertyAnimation m_selectAnimation;
};
