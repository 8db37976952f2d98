#include "wizard/pageflow.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr FooterButton ghost(const char *text, Command command)
{
    return { .text = text, .command = command };
}

constexpr FooterButton primary(const char *text, Command command)
{
    return { .text = text, .primary = true, .command = command };
}

constexpr FooterButton onTo(const char *text, PageId target)
{
    return { .text = text, .primary = true, .command = Command::ShowPage, .target = target };
}

constexpr FooterButton back(PageId target)
{
    return { .text = QT_TRANSLATE_NOOP("InstallerWizard", "Back"),
             .command = Command::ShowPage,
             .target = target };
}

constexpr const char *kAdministrator =
    QT_TRANSLATE_NOOP("InstallerWizard", "Administrator rights required");
constexpr const char *kNext = QT_TRANSLATE_NOOP("InstallerWizard", "Next");
constexpr FooterButton kCancel =
    ghost(QT_TRANSLATE_NOOP("InstallerWizard", "Cancel"), Command::Close);
constexpr FooterButton kClose =
    ghost(QT_TRANSLATE_NOOP("InstallerWizard", "Close"), Command::Close);
constexpr FooterButton kOnlyClose =
    primary(QT_TRANSLATE_NOOP("InstallerWizard", "Close"), Command::Close);
constexpr const char *kNothingChanged =
    QT_TRANSLATE_NOOP("InstallerWizard", "Nothing has been changed");
constexpr FooterButton kOpen =
    primary(QT_TRANSLATE_NOOP("InstallerWizard", "Open Varnel Schematics"), Command::OpenAndClose);

// The durations are part of the texts and are never measured.
// clang-format off
constexpr PageStop kStops[] = {
    { PageId::Welcome, kAdministrator,
      kCancel, onTo(kNext, PageId::License) },
    { PageId::License, QT_TRANSLATE_NOOP("InstallerWizard", "Read the license before continuing"),
      back(PageId::Welcome), onTo(kNext, PageId::SystemCheck) },
    { PageId::SystemCheck, QT_TRANSLATE_N_NOOP("InstallerWizard", "%n requirement(s) checked"),
      back(PageId::License), onTo(kNext, PageId::Destination) },
    { PageId::Destination, QT_TRANSLATE_NOOP("InstallerWizard", "Choose where Varnel Schematics lives"),
      back(PageId::SystemCheck), onTo(kNext, PageId::Tasks) },
    { PageId::Tasks, QT_TRANSLATE_NOOP("InstallerWizard", "Optional — safe to skip"),
      back(PageId::Destination), onTo(kNext, PageId::Ready) },
    { PageId::Ready, QT_TRANSLATE_NOOP("InstallerWizard", "Review before you install"),
      back(PageId::Tasks),
      primary(QT_TRANSLATE_NOOP("InstallerWizard", "Install"), Command::StartRun) },
    { PageId::Finished, QT_TRANSLATE_NOOP("InstallerWizard", "Finished in 51 seconds"),
      kClose, kOpen },

    { PageId::UpdateAvailable,
      QT_TRANSLATE_NOOP("InstallerWizard", "Recommended — includes performance fixes"),
      ghost(QT_TRANSLATE_NOOP("InstallerWizard", "Skip"), Command::Close),
      onTo(QT_TRANSLATE_NOOP("InstallerWizard", "Update Now"), PageId::ReadyToUpdate) },
    { PageId::ReadyToUpdate, QT_TRANSLATE_NOOP("InstallerWizard", "Review before you update"),
      back(PageId::UpdateAvailable),
      primary(QT_TRANSLATE_NOOP("InstallerWizard", "Update"), Command::StartRun) },
    { PageId::UpdateFinished, QT_TRANSLATE_NOOP("InstallerWizard", "Updated in 38 seconds"),
      kClose, kOpen },

    { PageId::ConfirmUninstall, kAdministrator,
      kCancel,
      { .text = QT_TRANSLATE_NOOP("InstallerWizard", "Uninstall"),
        .primary = true, .danger = true, .command = Command::StartRun } },
    { PageId::UninstallComplete, QT_TRANSLATE_NOOP("InstallerWizard", "Uninstalled in 24 seconds"),
      kClose, {} },

    { PageId::Damaged, kNothingChanged, {}, kOnlyClose },
    { PageId::NewerInstalled, kNothingChanged, {}, kOnlyClose },
};
// clang-format on

constexpr bool hasStop(PageId page)
{
    return std::ranges::count(kStops, page, &PageStop::page) == 1;
}

constexpr bool leadsSomewhere(const FooterButton &button)
{
    return button.command != Command::ShowPage || hasStop(button.target);
}

// The progress pages, one for each mode, have no footer of their own.
static_assert(std::size(kStops) == size_t(kPageCount) - 3);
static_assert(std::ranges::all_of(kStops, [](const PageStop &stop) {
    return hasStop(stop.page) && leadsSomewhere(stop.left) && leadsSomewhere(stop.right);
}));

} // namespace

const PageStop &pageStop(PageId page)
{
    return *std::ranges::find(kStops, page, &PageStop::page);
}
