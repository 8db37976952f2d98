#pragma once

#include "wizard/pageflow.h"

#include <array>

class ConfirmUninstallPage;
class DestinationPage;
class FinishedPage;
class InstallerPane;
class InstallingPage;
class LicensePage;
class ProgressPage;
class ReadyPage;
class ReadyToUpdatePage;
class SystemCheckPage;
class TasksPage;
class UninstallCompletePage;
class UpdateAvailablePage;
class UpdateFinishedPage;
class WizardPage;

/// The pages of all three flows: they are built once, with the window, and each is told what it is
/// to show when it is entered. What a page has to know of another goes through here.
class WizardPages
{
public:
    /// `pane` owns the pages from here on.
    explicit WizardPages(InstallerPane &pane);

    [[nodiscard]] WizardPage *page(PageId page) const { return m_all[size_t(page)]; }
    /// The one on which the run of `mode` is followed.
    [[nodiscard]] ProgressPage *progressPage(RunMode mode) const;

    /// To be called before `page` is shown.
    void prepare(PageId page);

    [[nodiscard]] LicensePage *license() const { return m_license; }
    [[nodiscard]] SystemCheckPage *systemCheck() const { return m_systemCheck; }
    [[nodiscard]] DestinationPage *destination() const { return m_destination; }
    [[nodiscard]] TasksPage *tasks() const { return m_tasks; }
    [[nodiscard]] InstallingPage *installing() const { return m_installing; }
    [[nodiscard]] FinishedPage *finished() const { return m_finished; }
    [[nodiscard]] UpdateFinishedPage *updateFinished() const { return m_updateFinished; }
    [[nodiscard]] ConfirmUninstallPage *confirmUninstall() const { return m_confirmUninstall; }
    [[nodiscard]] UninstallCompletePage *uninstallComplete() const { return m_uninstallComplete; }

private:
    std::array<WizardPage *, kPageCount> m_all {};
    LicensePage *m_license;
    SystemCheckPage *m_systemCheck;
    DestinationPage *m_destination;
    TasksPage *m_tasks;
    ReadyPage *m_ready;
    InstallingPage *m_installing;
    FinishedPage *m_finished;
    UpdateAvailablePage *m_updateAvailable;
    ReadyToUpdatePage *m_readyToUpdate;
    UpdateFinishedPage *m_updateFinished;
    ConfirmUninstallPage *m_confirmUninstall;
    UninstallCompletePage *m_uninstallComplete;
};
