#pragma once

#include "support/stricttest.h"
#include "theme/thememanager.h"

/// Each test begins in the light theme.
class LightThemeTest : public StrictTest
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        StrictTest::init();
        ThemeManager::instance().setDarkMode(false);
    }
};
