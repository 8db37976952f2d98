#pragma once

#include <functional>

/// Runs `showDialog`, which shows one of Qt's file dialogs, and keeps the user's settings as they
/// were: such a dialog writes into them when it is closed, also when it is cancelled.
void withoutDialogSettings(const std::function<void()> &showDialog);
