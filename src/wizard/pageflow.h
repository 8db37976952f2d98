#pragma once

/// The pages, in the order in which they are built.
enum class PageId {
    Welcome,
    License,
    SystemCheck,
    Destination,
    Tasks,
    Ready,
    Installing,
    Finished,
    UpdateAvailable,
    ReadyToUpdate,
    Updating,
    UpdateFinished,
    ConfirmUninstall,
    Uninstalling,
    UninstallComplete,
    Damaged,
    NewerInstalled,
};
inline constexpr int kPageCount = int(PageId::NewerInstalled) + 1;

/// What a footer button does.
enum class Command { ShowPage, StartRun, Close, OpenAndClose };

struct FooterButton
{
    const char *text = nullptr; ///< to be translated in the wizard's context; null for no button
    bool primary = false;
    bool danger = false;
    Command command = Command::Close;
    PageId target = PageId::Welcome; ///< of Command::ShowPage
};

/// A page on which the user decides: its footer and where its buttons lead.
struct PageStop
{
    PageId page;
    const char *status; ///< to be translated in the wizard's context
    /// The last of the two is enabled while WizardPage::isComplete().
    FooterButton left;
    FooterButton right;
};

/// Of any page but the progress pages.
[[nodiscard]] const PageStop &pageStop(PageId page);
