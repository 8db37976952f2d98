#pragma once

#include "pages/fittedtext.h"

#include <QLabel>

class QTextDocument;

/// A label for text from outside, which may be of any length. It also wraps within long words and
/// paths, and leaves out what does not fit, with an ellipsis. text() and a tool tip have
/// everything.
class FittedLabel : public QLabel
{
    Q_OBJECT

public:
    /// `shorten` decides what is left out.
    explicit FittedLabel(Shorten shorten, QWidget *parent = nullptr);

    /// Shows `markup` with the outside text `text`, taken literally, at its "%1".
    void setRichText(const QString &markup, const QString &text);

    /// Fills every line to its end, in the middle of a word too, so that the most is seen.
    void setWrapAnywhere(bool on);

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QString outsideText() const;
    [[nodiscard]] QRect textRect() const;
    void layOut(QTextDocument &document, const QString &text, int width) const;
    [[nodiscard]] bool isOrdinary(int width) const;
    [[nodiscard]] bool isShownByQLabel() const;
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] bool isSelectable() const;
    void selectWhole();

    Shorten m_shorten;
    bool m_wrapsAnywhere = false;
    QString m_markup; ///< empty for plain text
    QString m_outsideText; ///< what stands in the markup
};
