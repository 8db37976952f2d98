#pragma once

#include "widgets/revealrow.h"
#include "wizard/steplist.h"

/// A step that has been reached: a check mark and its text.
class StepList::StepRow : public RevealRow
{
    Q_OBJECT

public:
    StepRow(const QString &text, QWidget *parent);

    [[nodiscard]] QString text() const { return m_text; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintRow(QPainter &painter) override;

private:
    QString m_text;
};
