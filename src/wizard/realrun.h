#pragma once

#include "pages/setupchoices.h"
#include "wizard/setuprun.h"

class InstallerEngine;

/// A run of the setup engine. If this object goes the engine's run goes on, unheard.
class RealRun : public SetupRun
{
    Q_OBJECT

public:
    /// `engine` must outlive the run.
    RealRun(InstallerEngine &engine, const SetupChoices &choices);

    void start() override;
    [[nodiscard]] bool isReal() const override { return true; }

private:
    InstallerEngine &m_engine;
    const SetupChoices m_choices;
};
