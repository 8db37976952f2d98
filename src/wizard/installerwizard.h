#pragma once

#include "pages/setupchoices.h"
#include "widgets/announcer.h"
#include "widgets/delayedstart.h"
#include "wizard/keyguard.h"
#include "wizard/pageflow.h"
#include "wizard/spokenfocus.h"

#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class CarriedEngine;
class Celebration;
class InstallerEngine;
class InstallerFooterBar;
class InstallerPane;
class InstallerRail;
class InstallerTitleBar;
class ProgressPage;
class QPushButton;
class RunGuard;
class SetupRun;
class WizardPage;

/// The one window. It drives pages and runs and includes no page: which page comes and what its
/// footer says is in the page flow, what a run is made of in the run plan, what has been decided in
/// the choices, which the pages fill. The window enters pages, starts runs and shows how they go.
/// Every change of page passes through leavePage(), so that it follows at most one run.
class InstallerWizard : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerWizard(QWidget *parent = nullptr);
    ~InstallerWizard() override;

    /// The engine is not owned and must outlive the window; null shows simulated runs.
    void setEngine(InstallerEngine *engine);
    /// What installs and updates if the engine has no program for it; not owned either, and must
    /// outlive the window. It is started when the first page can be read.
    void setCarriedEngine(CarriedEngine *engine);
    /// Shows this page in place of all others.
    void showOnly(PageId page);
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

    [[nodiscard]] WizardPage *page(PageId page) const { return m_pages[int(page)]; }
    [[nodiscard]] ProgressPage *progressPage() const;
    [[nodiscard]] PageId firstPage() const;

    void enterPage(PageId page);
    void leavePage(const WizardPage *next);
    void showPage(WizardPage *page);
    void showFooter(const PageStop &stop);
    QPushButton *addFooterButton(const FooterButton &button);
    void focusDefaultButton(const QString &spoken);
    void execute(const FooterButton &button);

    void startRun();
    [[nodiscard]] bool usesEngine() const;
    void showProgress(double fraction);
    void showStatus(const QString &status);
    void onRunFinished(bool ok, const QString &error);
    void completeRun();
    void failRun(const QString &error);
    void enterFinish();

    InstallerTitleBar *m_titleBar;
    InstallerRail *m_rail;
    InstallerPane *m_pane;
    InstallerFooterBar *m_footer;
    Celebration *m_celebration;
    QList<WizardPage *> m_pages; ///< by PageId
    WizardPage *m_page = nullptr; ///< the current one

    SetupChoices m_choices;
    InstallerEngine *m_engine = nullptr;
    CarriedEngine *m_carriedEngine = nullptr;
    std::unique_ptr<SetupRun> m_run; ///< until the page is left on which it is followed
    std::unique_ptr<RunGuard> m_runGuard; ///< of a real run; if it fails, until the page is left
    QTimer m_unpackDelay { this }; ///< so that the first page comes in undisturbed
    QTimer m_finishDelay { this }; ///< how long a completed run stays on screen
    DelayedStart m_idleDelay; ///< from the finish page to the mark's floating
    SpokenFocus m_focus { this };
    Announcer m_announcer { this }; ///< of a run
    KeyGuard m_keyGuard { this }; ///< of a failure
    std::optional<PageId> m_onlyPage;
    bool m_wasShown = false;
    bool m_isClosing = false;
};
