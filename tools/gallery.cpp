// Takes pictures of every page of every flow, and of every animation at its start, middle and end.
//
//   varnel-gallery <folder> light|dark
//
// The window is the real one with a real engine object, whose signals are sent from here. The pixel
// ratio is that of QT_SCALE_FACTOR; tools/gallery calls this once per theme and ratio.

#include "app/applicationfonts.h"
#include "engine/installerengine.h"
#include "pages/checkrow.h"
#include "pages/destinationpage.h"
#include "pages/systemcheckpage.h"
#include "pages/updateavailablepage.h"
#include "product/product.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"
#include "wizard/installerwizard.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Longer than any entrance; after it only what moves for ever moves.
constexpr int kSettled = 1700; // ms

const QColor kDesktop(0x88, 0x99, 0xaa);
constexpr int kMargin = 16; // px of desktop around the window

const QString kFolder = uR"(C:\Program Files\Varnel Schematics\)"_s;

/// A machine as most users have one, with an older copy installed.
QJsonObject realisticRegistry()
{
    const QString system = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\)"_s;
    return {
        { system + uR"(Windows NT\CurrentVersion)",
          QJsonObject { { u"ProductName"_s, u"Windows 10 Pro"_s },
                        { u"DisplayVersion"_s, u"24H2"_s },
                        { u"CurrentBuild"_s, u"26100"_s } } },
        { uR"(HKEY_LOCAL_MACHINE\HARDWARE\DESCRIPTION\System\CentralProcessor\0)"_s,
          QJsonObject { { u"ProcessorNameString"_s, u"Twelve-Core Processor"_s },
                        { u"~MHz"_s, 3793 } } },
        { system + uR"(NET Framework Setup\NDP\v4\Full)",
          QJsonObject { { u"Release"_s, 533325 } } },
        { uR"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\EdgeUpdate\Clients\)"
          "{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}"_s,
          QJsonObject { { u"pv"_s, u"131.0.2903.51"_s } } },
        { system + uR"(Windows\CurrentVersion\Uninstall\)" + Product::kUninstallKey,
          QJsonObject { { u"DisplayVersion"_s, u"1.6.8"_s }, { u"InstallLocation"_s, kFolder } } },
    };
}

void wait(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

class Gallery
{
public:
    explicit Gallery(const QString &folder) : m_folder(folder)
    {
        m_engine.setSetupExecutable(Sandbox::setupEngine());
    }

    void install();
    void update();
    void uninstall();
    void failures();
    void longTexts();

private:
    void open(RunMode mode);
    void goOn(std::initializer_list<QString> buttons);
    void shoot(const QString &name);
    /// A picture with the pointer over `widget`.
    void hover(QWidget *widget, const QString &name);
    /// A picture of where the keyboard is after a key that moves it.
    void tab(const QString &name, Qt::Key key = Qt::Key_Tab);
    /// Pictures of what follows a moment, each at its time in milliseconds.
    void film(const QString &name, std::initializer_list<int> times);
    void press(const QString &button);
    void progress(double fraction, const QString &file, const QString &status);
    template <typename Control>
    Control *control(const QString &text = {});

    QDir m_folder;
    int m_count = 0;
    InstallerEngine m_engine;
    std::unique_ptr<InstallerWizard> m_wizard;
};

void Gallery::open(RunMode mode)
{
    m_wizard = std::make_unique<InstallerWizard>();
    m_wizard->setEngine(&m_engine);
    m_wizard->setUninstallerPath(Sandbox::setupEngine());
    m_wizard->setRunMode(mode);
    m_wizard->show();
    m_wizard->activateWindow();
}

void Gallery::goOn(std::initializer_list<QString> buttons)
{
    for (const QString &button : buttons) {
        wait(kSettled);
        press(button);
    }
    wait(kSettled);
}

void Gallery::shoot(const QString &name)
{
    const double ratio = m_wizard->devicePixelRatio();
    const QSize size = m_wizard->size().grownBy({ kMargin, kMargin, kMargin, kMargin });
    QImage picture(size * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(kDesktop);
    QPainter painter(&picture);
    painter.drawPixmap(kMargin, kMargin, m_wizard->grab());
    painter.end();
    const QString file = u"%1-%2.png"_s.arg(++m_count, 2, 10, QChar(u'0')).arg(name);
    if (!picture.save(m_folder.filePath(file)))
        qFatal("Cannot write %s", qPrintable(file));
}

void Gallery::film(const QString &name, std::initializer_list<int> times)
{
    QElapsedTimer clock;
    clock.start();
    for (int time : times) {
        wait(int(qMax(time - clock.elapsed(), qint64(0))));
        shoot(u"%1-at-%2-ms"_s.arg(name).arg(time));
    }
}

void Gallery::hover(QWidget *widget, const QString &name)
{
    QWindow *window = m_wizard->windowHandle();
    QTest::mouseMove(window, widget->mapTo(m_wizard.get(), widget->rect().center()));
    wait(50);
    shoot(name);
    QTest::mouseMove(window, QPoint(m_wizard->width() / 2, m_wizard->height() / 2));
    wait(50);
}

void Gallery::tab(const QString &name, Qt::Key key)
{
    QTest::keyClick(m_wizard->windowHandle(), key);
    wait(50);
    shoot(name);
}

template <typename Control>
Control *Gallery::control(const QString &text)
{
    const QList<Control *> controls = m_wizard->findChildren<Control *>();
    for (auto it = controls.rbegin(); it != controls.rend(); ++it) {
        if constexpr (std::is_base_of_v<QAbstractButton, Control>) {
            if ((*it)->isVisible() && (*it)->text() == text)
                return *it;
        } else if ((*it)->isVisible()) {
            return *it;
        }
    }
    qFatal("No control \"%s\"", qPrintable(text));
}

void Gallery::press(const QString &button)
{
    control<QPushButton>(button)->click();
}

void Gallery::progress(double fraction, const QString &file, const QString &status)
{
    Q_EMIT m_engine.progress(fraction);
    Q_EMIT m_engine.currentFile(file);
    Q_EMIT m_engine.statusChanged(status);
}

void Gallery::install()
{
    open(RunMode::Install);
    film(u"welcome"_s, { 0, 350, 700, 1000, kSettled });
    hover(control<QPushButton>(u"Next"_s), u"hover-next"_s);
    hover(control<QPushButton>(u"Cancel"_s), u"hover-cancel"_s);
    hover(control<QPushButton>(u"–"_s), u"hover-minimize"_s);
    hover(control<QPushButton>(u"✕"_s), u"hover-close"_s);
    press(u"Next"_s);
    film(u"license-slides-in"_s, { 0, 100, 200 });
    wait(kSettled);
    shoot(u"license-declined"_s);
    tab(u"focus-back"_s);
    tab(u"focus-answer"_s, Qt::Key_Backtab);
    control<RadioOption>(u"I accept the license agreement"_s)->click();
    film(u"license-choice"_s, { 60, 400 });
    press(u"Next"_s);
    film(u"system-check"_s, { 300, 700, kSettled });
    control<SystemCheckPage>()->setSmartAppControlOn(true);
    control<SystemCheckPage>()->startReveal();
    film(u"system-check-warning"_s, { 1350, kSettled });
    press(u"Next"_s);
    wait(kSettled);
    shoot(u"destination"_s);
    press(u"Next"_s);
    wait(kSettled);
    shoot(u"tasks"_s);
    tab(u"focus-minimize"_s);
    tab(u"focus-primary"_s, Qt::Key_Backtab);
    tab(u"focus-minimize-again"_s);
    tab(u"focus-close"_s);
    tab(u"focus-task"_s);
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    film(u"tasks-unchecking"_s, { 60, 400 });
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    film(u"tasks-checking"_s, { 60 });
    wait(kSettled);
    press(u"Next"_s);
    wait(kSettled);
    shoot(u"ready"_s);
    press(u"Install"_s);
    film(u"installing-waiting"_s, { 500, 900 });
    progress(0.0, kFolder + u"Qt6Core.dll", u"Extracting application files…"_s);
    wait(kSettled);
    shoot(u"installing-0"_s);
    progress(0.43, kFolder + uR"(symbols\ieee.lib)", u"Extracting application files…"_s);
    film(u"installing-43"_s, { 120, kSettled });
    progress(1.0, kFolder + u"VarnelSolutions.exe", u"Creating shortcuts…"_s);
    wait(kSettled);
    shoot(u"installing-100"_s);
    Q_EMIT m_engine.finished(true, QString());
    wait(500);
    film(u"finished"_s, { 0, 150, 400, 700, 1200, 4000 });
}

void Gallery::update()
{
    open(RunMode::Update);
    wait(kSettled);
    shoot(u"update-available"_s);
    press(u"Update Now"_s);
    wait(kSettled);
    shoot(u"ready-to-update"_s);
    press(u"Update"_s);
    film(u"updating-waiting"_s, { 500, 900 });
    progress(0.0, {}, u"This may take a few minutes."_s);
    wait(kSettled);
    shoot(u"updating-0"_s);
    progress(0.43, kFolder + u"Qt6Widgets.dll", u"Replacing application files…"_s);
    wait(kSettled);
    shoot(u"updating-43"_s);
    progress(1.0, kFolder + u"unins000.dat", u"Restarting services…"_s);
    wait(kSettled);
    shoot(u"updating-100"_s);
    Q_EMIT m_engine.finished(true, QString());
    wait(500);
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
    press(u"Uninstall"_s);
    film(u"uninstalling-waiting"_s, { 500, 900 });
    progress(0.0, {}, u"Stopping Varnel Schematics…"_s);
    wait(kSettled);
    shoot(u"uninstalling-0"_s);
    progress(0.43, kFolder + u"glfw3.dll", u"Removing application files…"_s);
    wait(kSettled);
    shoot(u"uninstalling-43"_s);
    progress(1.0, kFolder + u"unins000.exe", u"Unregistering file types…"_s);
    wait(kSettled);
    shoot(u"uninstalling-100"_s);
    Q_EMIT m_engine.finished(true, QString());
    wait(500);
    film(u"uninstall-complete"_s, { 0, 120, 300, kSettled });
}

void Gallery::failures()
{
    const auto fail = [this](const QString &name) {
        progress(0.43, kFolder + u"pdfium.dll", u"Replacing application files…"_s);
        Q_EMIT m_engine.finished(
            false,
            u"A fatal error occurred during installation.  There is not enough space on the disk "
            "to install the program.  "
            "(log: C:\\Users\\Ada\\AppData\\Local\\Temp\\varnel_setup_last.log)"_s);
        wait(kSettled);
        shoot(name);
    };
    open(RunMode::Install);
    goOn({ u"Next"_s });
    control<RadioOption>(u"I accept the license agreement"_s)->click();
    goOn({ u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Install"_s });
    fail(u"installing-failed"_s);
    open(RunMode::Update);
    goOn({ u"Update Now"_s, u"Update"_s });
    fail(u"updating-failed"_s);
    open(RunMode::Uninstall);
    goOn({ u"Uninstall"_s });
    fail(u"uninstalling-failed"_s);
}

void Gallery::longTexts()
{
    const QString folder =
        uR"(D:\Engineering\Electronics & <Boards>\Départements\Conception assistée\%1\)"
        uR"(Värnel Schematics für die Entwicklungsabteilung\Programme (64 Bit)\2026)"_s;
    open(RunMode::Install);
    goOn({ u"Next"_s });
    auto *license = control<QPlainTextEdit>();
    license->setPlainText(QString(license->toPlainText() + u"\n\n"_s).repeated(8));
    wait(50);
    shoot(u"license-long"_s);
    hover(license->verticalScrollBar(), u"license-long-hover"_s);
    control<RadioOption>(u"I accept the license agreement"_s)->click();
    goOn({ u"Next"_s, u"Next"_s });
    control<DestinationPage>()->setPath(folder);
    wait(50);
    shoot(u"destination-long"_s);
    goOn({ u"Next"_s });
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    goOn({ u"Next"_s });
    shoot(u"ready-long-without-tasks"_s);
    press(u"Install"_s);
    progress(0.5, folder + uR"(\library\symbols\connectors\usb-c-24-pin-receptacle.sch)",
             u"Extracting a file whose name is as long as the names that people give to files…"_s);
    wait(kSettled);
    shoot(u"installing-long"_s);
    Q_EMIT m_engine.finished(true, QString());
    wait(4000);
    shoot(u"finished-long-without-shortcut"_s);

    open(RunMode::Update);
    wait(kSettled);
    control<UpdateAvailablePage>()->setVersions({}, u"1.6.9"_s);
    wait(kSettled);
    shoot(u"update-available-not-found"_s);

    open(RunMode::Uninstall);
    goOn({ u"Uninstall"_s });
    Q_EMIT m_engine.finished(true, QString());
    wait(kSettled);
    shoot(u"uninstall-complete-preferences-kept"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3 || !QDir().mkpath(arguments[1])) {
        std::fprintf(stderr, "usage: varnel-gallery <folder> light|dark\n");
        return 1;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
    ThemeManager::instance().setDarkMode(arguments[2] == "dark"_L1);

    // Engines that are started stand still; what they would say is said here.
    Sandbox sandbox;
    sandbox.setScenario("stall = forever\nstage = start\nstatus-path = never\nlog-none = yes\n");
    sandbox.setRegistry(realisticRegistry());
    qunsetenv("ProgramFiles");
    qunsetenv("ProgramW6432");

    Gallery gallery(arguments[1]);
    gallery.install();
    gallery.update();
    gallery.uninstall();
    gallery.failures();
    gallery.longTexts();
    return 0;
}
