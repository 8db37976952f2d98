#pragma once

#include "wizard/pageflow.h"

#include <QStringList>

/// What a run of each mode is made of.
struct RunPlan
{
    PageId progressPage;
    PageId finishPage;
    bool fillsMark; ///< the mark fills with progress; otherwise it empties
    double simulationStep; ///< percentage points per tick without an engine
};
[[nodiscard]] const RunPlan &runPlan(RunMode mode);

/// The steps that the progress page shows; `removesUserData` adds one to a removal.
[[nodiscard]] QStringList runSteps(RunMode mode, bool removesUserData);
