#pragma once

#include "pages/setupchoices.h"
#include "wizard/setuprun.h"

class InstallerEngine;

/// A run of the setup engine. Deleting it does not stop the engine, whose signals are then no
/// longer forwarded.
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
