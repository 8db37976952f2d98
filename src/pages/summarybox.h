#pragma once

#include "pages/fittedlabel.h"

/// The framed box with what is about to be done. Its height is fixed, so of a folder that would
/// need more lines than it has, the middle is left out.
class SummaryBox : public FittedLabel
{
    Q_OBJECT

public:
    explicit SummaryBox(QWidget *parent = nullptr);
};
