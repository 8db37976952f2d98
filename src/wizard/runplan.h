#pragma once

#include "pages/runmode.h"
#include "wizard/pageflow.h"

#include <QStringList>

#include <array>

/// What the window does in each mode.
struct RunPlan
{
    RunMode mode;
    PageId firstPage;
    PageId progressPage;
    PageId finishPage;
    const char *underWay; ///< why the session should wait; to be translated as the steps
    bool fillsMark; ///< the mark fills with progress; otherwise it empties
    double simulationStep; ///< percentage points per tick without an engine
    std::array<const char *, 4> steps; ///< to be translated in the wizard's context
};
[[nodiscard]] const RunPlan &runPlan(RunMode mode);

/// The steps that the progress page shows; `removesPreferences` adds one to a removal.
[[nodiscard]] QStringList runSteps(RunMode mode, bool removesPreferences);
