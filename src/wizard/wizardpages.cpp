#include "wizard/wizardpages.h"

#include "pages/confirmuninstallpage.h"
#include "pages/damagedpage.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/licensepage.h"
#include "pages/newerinstalledpage.h"
#include "pages/readypage.h"
#include "pages/readytoupdatepage.h"
#include "pages/systemcheckpage.h"
#include "pages/taskspage.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updateavailablepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "wizard/installingpage.h"
#include "wizard/pageflow.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"

#include <array>

namespace {

struct PageEntry
{
    PageId id;
    WizardPage *(*create)();
};

template <typename Page>
WizardPage *create()
{
    return new Page;
}

constexpr std::array kPages = {
    PageEntry { PageId::Welcome, create<WelcomePage> },
    PageEntry { PageId::License, create<LicensePage> },
    PageEntry { PageId::SystemCheck, create<SystemCheckPage> },
    PageEntry { PageId::Destination, create<DestinationPage> },
    PageEntry { PageId::Tasks, create<TasksPage> },
    PageEntry { PageId::Ready, create<ReadyPage> },
    PageEntry { PageId::Installing, create<InstallingPage> },
    PageEntry { PageId::Finished, create<FinishedPage> },
    PageEntry { PageId::UpdateAvailable, create<UpdateAvailablePage> },
    PageEntry { PageId::ReadyToUpdate, create<ReadyToUpdatePage> },
    PageEntry { PageId::Updating, create<UpdatingPage> },
    PageEntry { PageId::UpdateFinished, create<UpdateFinishedPage> },
    PageEntry { PageId::ConfirmUninstall, create<ConfirmUninstallPage> },
    PageEntry { PageId::Uninstalling, create<UninstallingPage> },
    PageEntry { PageId::UninstallComplete, create<UninstallCompletePage> },
    PageEntry { PageId::Damaged, create<DamagedPage> },
    PageEntry { PageId::NewerInstalled, create<NewerInstalledPage> },
};

constexpr bool hasARowForEachPageInOrder()
{
    for (size_t i = 0; i < kPages.size(); ++i) {
        if (kPages[i].id != PageId(i))
            return false;
    }
    return kPages.size() == kPageCount;
}
static_assert(hasARowForEachPageInOrder());

} // namespace

QList<WizardPage *> createPages()
{
    QList<WizardPage *> pages;
    for (const PageEntry &entry : kPages)
        pages.append(entry.create());
    return pages;
}
