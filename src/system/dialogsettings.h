#pragma once

#include <functional>

/// Runs `showDialog`, which shows one of Qt's file dialogs, and leaves nothing behind of what such
/// a dialog writes into the user's settings when it goes, cancelled or not.
void withoutDialogSettings(const std::function<void()> &showDialog);
