#pragma once

/// The processes that this one starts, also those that are started detached and those that they
/// start in turn.

/// From now on awaitOffspring() knows of them; false where the system cannot tell.
[[nodiscard]] bool adoptOffspring();

/// Waits until none is left.
void awaitOffspring();
