#include "wizard/wizardpages.h"

#include "files/installpath.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/licensepage.h"
#include "pages/readypage.h"
#include "pages/readytoupdatepage.h"
#include "pages/systemcheckpage.h"
#include "pages/taskspage.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updateavailablepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "product/product.h"
#include "system/installation.h"
#include "wizard/installerpane.h"
#include "wizard/installingpage.h"
#include "wizard/runplan.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"

#include <QDir>

namespace {

/// The recorded folder, unless the engine is given another one for it, as it is for the root of a
/// drive.
QString updateFolder()
{
    const QString recorded = installLocation();
    const QString given = installFolder(recorded);
    return QString(recorded).replace(u'\\', u'/') == given ? recorded
                                                           : QDir::toNativeSeparators(given);
}

} // namespace

WizardPages::WizardPages(InstallerPane &pane)
{
    m_all = {
        new WelcomePage,
        m_license = new LicensePage,
        m_systemCheck = new SystemCheckPage,
        m_destination = new DestinationPage,
        m_tasks = new TasksPage,
        m_ready = new ReadyPage,
        m_installing = new InstallingPage,
        m_finished = new FinishedPage,
        m_updateAvailable = new UpdateAvailablePage,
        m_readyToUpdate = new ReadyToUpdatePage,
        new UpdatingPage,
        m_updateFinished = new UpdateFinishedPage,
        m_confirmUninstall = new ConfirmUninstallPage,
        new UninstallingPage,
        m_uninstallComplete = new UninstallCompletePage,
    };
    for (WizardPage *page : m_all)
        pane.addPage(page);
}

ProgressPage *WizardPages::progressPage(RunMode mode) const
{
    return static_cast<ProgressPage *>(page(runPlan(mode).progressPage));
}

void WizardPages::prepare(PageId page)
{
    const QString path = m_destination->path();
    switch (page) {
    case PageId::SystemCheck:
        m_systemCheck->runChecks(path);
        break;
    case PageId::Ready:
        if (!path.isEmpty())
            m_ready->setSummary(path, m_tasks->desktopShortcut());
        break;
    case PageId::Finished:
        if (!path.isEmpty())
            m_finished->setResult(path, m_tasks->desktopShortcut());
        break;
    case PageId::UpdateAvailable: {
        const QString version = Product::kVersion.toString();
        const QString folder = updateFolder();
        m_updateAvailable->setVersions(installedVersion(), version);
        m_readyToUpdate->setDetails(version, folder);
        m_updateFinished->setVersion(version);
        // So that "Open" starts the copy that was updated.
        if (!folder.isEmpty())
            m_destination->setPath(folder);
        break;
    }
    case PageId::ConfirmUninstall:
        m_confirmUninstall->setVersion(installedVersion());
        break;
    case PageId::UninstallComplete:
        m_uninstallComplete->setPreferencesRemoved(m_confirmUninstall->deletePreferences());
        break;
    default:
        break;
    }
}
