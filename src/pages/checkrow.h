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
    bool event(QEvent *event) override;
    void paintRow(QPainter &painter) override;

private:
    [[nodiscard]] QFont labelFont() const;
    [[nodiscard]] QRect labelRect() const;
    [[nodiscard]] QRect valueRect() const;
    /// The value, shortened to the room it has.
    [[nodiscard]] QString shownValue() const;
    void paintBadge(QPainter &painter, const QRectF &badge) const;

    CheckResult m_result;
};
