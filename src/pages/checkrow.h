#pragma once

#include "pages/systemcheckpage.h"
#include "system/requirements.h"
#include "widgets/revealrow.h"

/// One finding: a badge, what was looked at, and what was found.
class SystemCheckPage::CheckRow : public RevealRow
{
    Q_OBJECT

public:
    CheckRow(const CheckResult &result, QWidget *parent);

    [[nodiscard]] const CheckResult &result() const { return m_result; }
    void setResult(const CheckResult &result);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintRow(QPainter &painter) override;

private:
    void paintBadge(QPainter &painter, const QRectF &badge) const;

    CheckResult m_result;
};
