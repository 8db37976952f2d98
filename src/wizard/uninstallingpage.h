#pragma once

#include "wizard/progresspage.h"

/// A removal in progress.
class UninstallingPage : public ProgressPage
{
    Q_OBJECT

public:
    explicit UninstallingPage(QWidget *parent = nullptr);
};
