#pragma once

/// What the wizard does; selects its pages and its run.
enum class RunMode { Install = 0, Update = 1, Uninstall = 2 };
