#pragma once

/// What the wizard is there for; fixed for the life of its window.
enum class RunMode { Install = 0, Update = 1, Uninstall = 2 };
