#pragma once

#include "widgets/announcer.h"
#include "widgets/delayedstart.h"
#include "wizard/keyguard.h"
#include "wizard/pageflow.h"
#include "wizard/simulatedrun.h"
#include "wizard/spokenfocus.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <memory>

class Celebration;
class InstallerEngine;
class InstallerFooterBar;
class InstallerPane;
class InstallerRail;
class InstallerTitleBar;
class ProgressPage;
class WizardPages;

/// The one window. It conducts: which page comes and what its footer says is in the page flow, what
/// a page is told in the wizard's pages, what a run is made of in the run plan; the window enters
/// pages, starts runs and shows how they go. Every change of page passes through leavePage(), so
/// that at most one run is ever connected.
class InstallerWizard : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerWizard(QWidget *parent = nullptr);
    ~InstallerWizard() override;

    /// The engine is not owned and must outlive the window; null shows simulated runs.
    void setEngine(InstallerEngine *engine);
    /// What a removal runs; empty takes the uninstaller of the recorded copy.
    void setUninstallerPath(const QString &path);
    /// Enters the first page of `mode`.
    void setRunMode(RunMode mode);

    /// Hides the window, starts the installed application if `launch` says so, and ends the event
    /// loop. Only the first call acts.
    void closeAndQuit(bool launch);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildChrome();

    void enterPage(PageId page);
    void leavePage(const QWidget *next);
    void showFooter(const PageStop &stop);
    void addFooterButton(const FooterButton &button);
    void focusWayOn(const QString &spoken);
    void obey(const FooterButton &button);

    void startRun();
    void startEngine();
    [[nodiscard]] bool usesEngine() const;
    void showProgress(double fraction);
    void showStatus(const QString &status);
    void completeRun();
    void onEngineFinished(bool ok, const QString &error);
    void failRun(const QString &error);
    void enterFinish();

    [[nodiscard]] ProgressPage *progressPage() const;

    InstallerTitleBar *m_titleBar;
    InstallerRail *m_rail;
    InstallerPane *m_pane;
    InstallerFooterBar *m_footer;
    Celebration *m_celebration;
    std::unique_ptr<WizardPages> m_pages;

    RunMode m_runMode = RunMode::Install;
    QString m_uninstallerPath;
    InstallerEngine *m_engine = nullptr;
    std::array<QMetaObject::Connection, 4> m_engineConnections;
    SimulatedRun m_simulation;
    QTimer m_finishDelay { this }; ///< the last look at a completed run
    DelayedStart m_idleDelay; ///< from the finish page to the mark's floating
    SpokenFocus m_focus { this };
    Announcer m_announcer { this }; ///< of a run
    KeyGuard m_keyGuard { this }; ///< of a failure
    bool m_wasShown = false;
    bool m_isClosing = false;
};
