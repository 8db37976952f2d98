// Takes pictures of every page of every flow, and of every animation at its start, middle and end.
//
//   varnel-gallery <folder> light|dark
//
// Those with texts of every length from outside go to the folder "names" in it.
//
// The window is the real one, with the made-up data of WizardScene. The pixel ratio is that of
// QT_SCALE_FACTOR; tools/gallery calls this once per theme and ratio.

#include "app/applicationfonts.h"
#include "camera.h"
#include "longnames.h"
#include "pages/systemcheckpage.h"
#include "pages/updateavailablepage.h"
#include "theme/thememanager.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

#include <array>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFolder = WizardScene::folder();

class Gallery : public Camera
{
public:
    using Camera::Camera;

    void install();
    void update();
    void uninstall();
    void failures();
    void longTexts();

private:
    void run(const QString &name, PageId page, const std::array<QString, 3> &texts);
};

/// A run before its first report, at its start, in the middle and at its end.
void Gallery::run(const QString &name, PageId page, const std::array<QString, 3> &texts)
{
    m_scene.goTo(page);
    film(name + u"-waiting", { 500, 900 });
    m_scene.report(0.0, {}, texts[0]);
    wait(kSettled);
    shoot(name + u"-0");
    m_scene.report(0.43, kFolder + uR"(symbols\ieee.lib)", texts[1]);
    film(name + u"-43", { 120, kSettled });
    m_scene.report(1.0, kFolder + u"VarnelSolutions.exe", texts[2]);
    wait(kSettled);
    shoot(name + u"-100");
}

void Gallery::install()
{
    open(RunMode::Install);
    film(u"welcome"_s, { 0, 350, 700, 1000, kSettled });
    hover(control<QPushButton>(u"Next"_s), u"hover-next"_s);
    hover(control<QPushButton>(u"Cancel"_s), u"hover-cancel"_s);
    hover(control<QPushButton>(u"–"_s), u"hover-minimize"_s);
    hover(control<QPushButton>(u"✕"_s), u"hover-close"_s);
    m_scene.goTo(PageId::License);
    film(u"license-slides-in"_s, { 0, 100, 200 });
    wait(kSettled);
    shoot(u"license-declined"_s);
    tab(u"focus-back"_s);
    tab(u"focus-answer"_s, Qt::Key_Backtab);
    tab(u"focus-license"_s, Qt::Key_Backtab);
    hover(control<RadioOption>(u"I accept the license agreement"_s), u"hover-answer"_s);
    control<RadioOption>(u"I accept the license agreement"_s)->click();
    film(u"license-choice"_s, { 60, 400 });
    m_scene.goTo(PageId::SystemCheck);
    film(u"system-check"_s, { 300, 700, kSettled });
    control<SystemCheckPage>()->setSmartAppControlOn(true);
    control<SystemCheckPage>()->startReveal();
    film(u"system-check-warning"_s, { 1350, kSettled });
    goTo(PageId::Destination);
    shoot(u"destination"_s);
    hover(control<QPushButton>(u"Change"_s), u"hover-change"_s);
    goTo(PageId::Tasks);
    shoot(u"tasks"_s);
    tab(u"focus-minimize"_s);
    tab(u"focus-primary"_s, Qt::Key_Backtab);
    tab(u"focus-minimize-again"_s);
    tab(u"focus-close"_s);
    tab(u"focus-task"_s);
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    film(u"tasks-unchecking"_s, { 60, 400 });
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    film(u"tasks-checking"_s, { 60, 400 });
    wait(kSettled);
    goTo(PageId::Ready);
    shoot(u"ready"_s);
    run(u"installing"_s, PageId::Installing,
        { u"Extracting application files…"_s, u"Extracting application files…"_s,
          u"Creating shortcuts…"_s });
    m_scene.goTo(PageId::Finished);
    film(u"finished"_s, { 0, 150, 400, 700, 1200, 4000 });
}

void Gallery::update()
{
    open(RunMode::Update);
    wait(kSettled);
    shoot(u"update-available"_s);
    goTo(PageId::ReadyToUpdate);
    shoot(u"ready-to-update"_s);
    run(u"updating"_s, PageId::Updating,
        { u"This may take a few minutes."_s, u"Replacing application files…"_s,
          u"Restarting services…"_s });
    m_scene.goTo(PageId::UpdateFinished);
    film(u"update-finished"_s, { 0, 400, 4000 });
}

void Gallery::uninstall()
{
    open(RunMode::Uninstall);
    wait(kSettled);
    shoot(u"confirm-uninstall"_s);
    control<ToggleCheckbox>(u"Also delete my preferences and cached data"_s)->click();
    wait(kSettled);
    shoot(u"confirm-uninstall-with-preferences"_s);
    hover(control<QPushButton>(u"Uninstall"_s), u"hover-danger"_s);
    run(u"uninstalling"_s, PageId::Uninstalling,
        { u"Stopping Varnel Schematics…"_s, u"Removing application files…"_s,
          u"Unregistering file types…"_s });
    m_scene.goTo(PageId::UninstallComplete);
    film(u"uninstall-complete"_s, { 0, 120, 300, kSettled });
}

void Gallery::failures()
{
    open(RunMode::Install);
    m_scene.window().showOnly(PageId::Damaged);
    wait(kSettled);
    shoot(u"damaged"_s);
    open(RunMode::Update);
    m_scene.findNewer();
    wait(kSettled);
    shoot(u"newer-installed"_s);
    const auto fail = [this](const QString &name) {
        m_scene.report(0.43, kFolder + u"pdfium.dll", u"Replacing application files…"_s);
        m_scene.fail(uR"(  (log: C:\Users\Ada\AppData\Local\Temp\varnel_setup_last.log))"_s);
        wait(kSettled);
        shoot(name);
    };
    open(RunMode::Install);
    goTo(PageId::Installing);
    fail(u"installing-failed"_s);
    open(RunMode::Update);
    goTo(PageId::Updating);
    fail(u"updating-failed"_s);
    open(RunMode::Uninstall);
    goTo(PageId::Uninstalling);
    fail(u"uninstalling-failed"_s);
}

void Gallery::longTexts()
{
    open(RunMode::Install);
    goTo(PageId::License);
    auto *license = control<QPlainTextEdit>();
    license->setPlainText(QString(license->toPlainText() + u"\n\n"_s).repeated(8));
    wait(50);
    shoot(u"license-long"_s);
    hover(license->verticalScrollBar(), u"license-long-hover"_s);
    goTo(PageId::Tasks);
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    goTo(PageId::Ready);
    shoot(u"ready-without-tasks"_s);
    m_scene.goTo(PageId::Finished);
    wait(4000);
    shoot(u"finished-without-shortcut"_s);

    open(RunMode::Update);
    wait(kSettled);
    control<UpdateAvailablePage>()->setVersions({}, u"1.6.9"_s);
    wait(kSettled);
    shoot(u"update-available-not-found"_s);

    open(RunMode::Uninstall);
    goTo(PageId::UninstallComplete);
    shoot(u"uninstall-complete-preferences-kept"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: varnel-gallery <folder> light|dark\n");
        return 1;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
    ThemeManager::instance().setDarkMode(arguments[2] == "dark"_L1);

    Gallery gallery(arguments[1]);
    gallery.install();
    gallery.update();
    gallery.uninstall();
    gallery.failures();
    gallery.longTexts();
    takePicturesOfLongNames(arguments[1] + u"/names"_s);
    return 0;
}
