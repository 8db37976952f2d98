#pragma once

#include "wizard/progresspage.h"

/// An installation in progress.
class InstallingPage : public ProgressPage
{
    Q_OBJECT

public:
    explicit InstallingPage(QWidget *parent = nullptr);
};
