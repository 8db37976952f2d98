#pragma once

#include <QLabel>

/// The framed box with what is about to be done. Its height is fixed, so a path that would need so
/// many lines that what follows it fell out is cut at the edge instead; the tool tip has it whole.
class SummaryBox : public QLabel
{
    Q_OBJECT

public:
    explicit SummaryBox(QWidget *parent = nullptr);

    /// Rich text; outside text in it must come escaped.
    void setSummary(const QString &text);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Wraps the text if it then fits. Only for a box that is seen: measuring takes fonts, which a
    /// program that is just starting loads one by one.
    void fit();
};
