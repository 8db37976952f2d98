#pragma once

#include "wizard/progresspage.h"

/// An update in progress.
class UpdatingPage : public ProgressPage
{
    Q_OBJECT

public:
    explicit UpdatingPage(QWidget *parent = nullptr);
};
