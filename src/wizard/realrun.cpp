#include "wizard/realrun.h"

#include "engine/installerengine.h"

using namespace Qt::Literals::StringLiterals;

RealRun::RealRun(InstallerEngine &engine, const SetupChoices &choices)
    : m_engine(engine), m_choices(choices)
{
    connect(&engine, &InstallerEngine::progress, this, &SetupRun::progress);
    connect(&engine, &InstallerEngine::currentFile, this, &SetupRun::currentFile);
    connect(&engine, &InstallerEngine::statusChanged, this, &SetupRun::statusChanged);
    connect(&engine, &InstallerEngine::finished, this, &SetupRun::finished);
}

void RealRun::start()
{
    switch (m_choices.mode) {
    case RunMode::Install:
        m_engine.startInstall(m_choices.folder,
                              m_choices.desktopShortcut ? QStringList { u"desktopicon"_s }
                                                        : QStringList());
        break;
    case RunMode::Update:
        // InstallerEngine makes the folder that was shown of it.
        m_engine.startInstall(m_choices.recordedFolder, {});
        break;
    case RunMode::Uninstall:
        m_engine.startUninstall(m_choices.uninstaller);
        break;
    }
}
