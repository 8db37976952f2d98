#pragma once

#include "pages/wizardpage.h"

/// First page of an installation: what will be installed, and by whom.
class WelcomePage : public WizardPage
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent = nullptr);
};
