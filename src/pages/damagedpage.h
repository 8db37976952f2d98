#pragma once

#include "pages/wizardpage.h"

/// The only page of a set-up file that is not whole.
class DamagedPage : public WizardPage
{
    Q_OBJECT

public:
    explicit DamagedPage(QWidget *parent = nullptr);
};
