#pragma once

#include "app/applicationfonts.h"
#include "pages/lightthemetest.h"
#include "wizard/wizarddriver.h"

#include <QApplication>

/// What the tests of the window and its parts have in common: the program's fonts.
class WizardTest : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        registerApplicationFonts();
    }
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }

protected:
    /// A row for each mode.
    static void addModes()
    {
        QTest::addColumn<RunMode>("mode");
        QTest::newRow("install") << RunMode::Install;
        QTest::newRow("update") << RunMode::Update;
        QTest::newRow("uninstall") << RunMode::Uninstall;
    }

    // The classes of the pages on which a mode runs and ends.
    static QByteArray progressPage(RunMode mode)
    {
        return mode == RunMode::Install ? "InstallingPage"
            : mode == RunMode::Update   ? "UpdatingPage"
                                        : "UninstallingPage";
    }
    static QByteArray finishPage(RunMode mode)
    {
        return mode == RunMode::Install ? "FinishedPage"
            : mode == RunMode::Update   ? "UpdateFinishedPage"
                                        : "UninstallCompletePage";
    }
};
