#pragma once

#include "engine/installerengine.h"
#include "support/sandbox.h"
#include "wizard/installerwizard.h"

#include <QAbstractButton>

#include <memory>

class WizardScene;

/// A page, and what happens on it before it is looked at.
struct Scene
{
    const char *name;
    RunMode mode;
    PageId page;
    void (*then)(WizardScene &) = nullptr;
};

/// Every page, and what changes the looks of one.
[[nodiscard]] QList<Scene> scenes();

/// The real window on any of its pages, with made-up data that is the same on every machine: a
/// computer as most users have one, an older copy installed, and an engine that stands still and
/// says what it is told to say here. For pictures and for what is compared with a record.
class WizardScene
{
public:
    WizardScene();

    /// Shows a new window on the first page of `mode`; the one before is gone.
    void open(RunMode mode);
    /// Presses on, as far as `page`, which must lie ahead in the mode that is open. Accepts the
    /// licence, and lets the engine finish.
    void goTo(PageId page);
    void enter(const Scene &scene);

    /// What the engine reports.
    void report(double fraction, const QString &file, const QString &status);
    /// `log` follows the message.
    void fail(const QString &log = {});
    /// As if a newer version were installed when the wizard started.
    void findNewer();

    /// Where the older copy lies.
    [[nodiscard]] static QString folder();

    [[nodiscard]] InstallerWizard &window() { return *m_wizard; }
    /// The last visible child of that class, of those with a text the one that has `text`.
    template <typename Control>
    [[nodiscard]] Control *control(const QString &text = {}) const;

private:
    void pressOn();
    void finish();
    void showRealisticFindings();

    Sandbox m_sandbox;
    InstallerEngine m_engine;
    std::unique_ptr<InstallerWizard> m_wizard;
    RunMode m_mode = RunMode::Install;
    PageId m_page = PageId::Welcome;
};

template <typename Control>
Control *WizardScene::control(const QString &text) const
{
    const QList<Control *> controls = m_wizard->findChildren<Control *>();
    for (auto it = controls.rbegin(); it != controls.rend(); ++it) {
        if (!(*it)->isVisible())
            continue;
        if constexpr (std::is_base_of_v<QAbstractButton, Control>) {
            if ((*it)->text() != text)
                continue;
        }
        return *it;
    }
    qFatal("No control \"%s\"", qPrintable(text));
}
