// Takes pictures of every page of every flow, and of every animation at its start, middle and end.
//
//   varnel-gallery <folder> light|dark
//
// The window is the real one, with the made-up data of WizardScene. The pixel ratio is that of
// QT_SCALE_FACTOR; tools/gallery calls this once per theme and ratio.

#include "app/applicationfonts.h"
#include "pages/destinationpage.h"
#include "pages/systemcheckpage.h"
#include "pages/updateavailablepage.h"
#include "theme/thememanager.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"
#include "wizard/wizardscene.h"

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

/// Longer than what fades in under the pointer.
constexpr int kHover = 300; // ms

const QColor kDesktop(0x88, 0x99, 0xaa);
constexpr int kMargin = 16; // px of desktop around the window

const QString kFolder = WizardScene::folder();

void wait(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    while (clock.elapsed() < milliseconds);
}

class Gallery
{
public:
    explicit Gallery(const QString &folder) : m_folder(folder) {}

    void install();
    void update();
    void uninstall();
    void failures();
    void longTexts();

private:
    void open(RunMode mode);
    /// Presses on to `page` and waits until it has come to rest.
    void goTo(PageId page);
    [[nodiscard]] QImage picture();
    void save(const QImage &picture, const QString &name);
    void shoot(const QString &name);
    /// A picture with the pointer over `widget`.
    void hover(QWidget *widget, const QString &name);
    /// A picture of where the keyboard is after a key that moves it.
    void tab(const QString &name, Qt::Key key = Qt::Key_Tab);
    /// Pictures of what follows a moment, each at its time in milliseconds.
    void film(const QString &name, std::initializer_list<int> times);
    template <typename Control>
    Control *control(const QString &text = {})
    {
        return m_scene.control<Control>(text);
    }

    QDir m_folder;
    int m_count = 0;
    WizardScene m_scene;
};

void Gallery::open(RunMode mode)
{
    m_scene.open(mode);
    m_scene.window().activateWindow();
}

void Gallery::goTo(PageId page)
{
    m_scene.goTo(page);
    wait(kSettled);
}

QImage Gallery::picture()
{
    const double ratio = m_scene.window().devicePixelRatio();
    const QSize size = m_scene.window().size().grownBy({ kMargin, kMargin, kMargin, kMargin });
    QImage picture(size * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(kDesktop);
    QPainter painter(&picture);
    painter.drawPixmap(kMargin, kMargin, m_scene.window().grab());
    painter.end();
    return picture;
}

void Gallery::save(const QImage &picture, const QString &name)
{
    const QString file = u"%1-%2.png"_s.arg(++m_count, 2, 10, QChar(u'0')).arg(name);
    if (!picture.save(m_folder.filePath(file)))
        qFatal("Cannot write %s", qPrintable(file));
}

void Gallery::shoot(const QString &name)
{
    save(picture(), name);
}

void Gallery::film(const QString &name, std::initializer_list<int> times)
{
    // Saved only afterwards: packing a picture takes longer than many an animation.
    QElapsedTimer clock;
    clock.start();
    QList<QImage> pictures;
    for (int time : times) {
        wait(int(qMax(time - clock.elapsed(), qint64(1))));
        pictures.append(picture());
    }
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        const QString moment = u"%1-at-%2-ms"_s.arg(name).arg(times.begin()[i]);
        if (i > 0 && pictures[i] == pictures[i - 1])
            std::fprintf(stderr, "Nothing moves until %s\n", qPrintable(moment));
        save(pictures[i], moment);
    }
}

void Gallery::hover(QWidget *widget, const QString &name)
{
    QWindow *window = m_scene.window().windowHandle();
    QTest::mouseMove(window, widget->mapTo(&m_scene.window(), widget->rect().center()));
    wait(kHover);
    shoot(name);
    QTest::mouseMove(window, QPoint(m_scene.window().width() / 2, m_scene.window().height() / 2));
    wait(kHover);
}

void Gallery::tab(const QString &name, Qt::Key key)
{
    QTest::keyClick(m_scene.window().windowHandle(), key);
    wait(50);
    shoot(name);
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
    m_scene.goTo(PageId::Installing);
    film(u"installing-waiting"_s, { 500, 900 });
    m_scene.report(0.0, kFolder + u"Qt6Core.dll", u"Extracting application files…"_s);
    wait(kSettled);
    shoot(u"installing-0"_s);
    m_scene.report(0.43, kFolder + uR"(symbols\ieee.lib)", u"Extracting application files…"_s);
    film(u"installing-43"_s, { 120, kSettled });
    m_scene.report(1.0, kFolder + u"VarnelSolutions.exe", u"Creating shortcuts…"_s);
    wait(kSettled);
    shoot(u"installing-100"_s);
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
    m_scene.goTo(PageId::Updating);
    film(u"updating-waiting"_s, { 500, 900 });
    m_scene.report(0.0, {}, u"This may take a few minutes."_s);
    wait(kSettled);
    shoot(u"updating-0"_s);
    m_scene.report(0.43, kFolder + u"Qt6Widgets.dll", u"Replacing application files…"_s);
    wait(kSettled);
    shoot(u"updating-43"_s);
    m_scene.report(1.0, kFolder + u"unins000.dat", u"Restarting services…"_s);
    wait(kSettled);
    shoot(u"updating-100"_s);
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
    m_scene.goTo(PageId::Uninstalling);
    film(u"uninstalling-waiting"_s, { 500, 900 });
    m_scene.report(0.0, {}, u"Stopping Varnel Schematics…"_s);
    wait(kSettled);
    shoot(u"uninstalling-0"_s);
    m_scene.report(0.43, kFolder + u"glfw3.dll", u"Removing application files…"_s);
    wait(kSettled);
    shoot(u"uninstalling-43"_s);
    m_scene.report(1.0, kFolder + u"unins000.exe", u"Unregistering file types…"_s);
    wait(kSettled);
    shoot(u"uninstalling-100"_s);
    m_scene.goTo(PageId::UninstallComplete);
    film(u"uninstall-complete"_s, { 0, 120, 300, kSettled });
}

void Gallery::failures()
{
    const auto fail = [this](const QString &name) {
        m_scene.report(0.43, kFolder + u"pdfium.dll", u"Replacing application files…"_s);
        m_scene.fail(
            u"A fatal error occurred during installation.  There is not enough space on the disk "
            "to install the program.  "
            "(log: C:\\Users\\Ada\\AppData\\Local\\Temp\\varnel_setup_last.log)"_s);
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
    const QString folder =
        uR"(D:\Engineering\Electronics & <Boards>\Départements\Conception assistée\%1\)"
        uR"(Värnel Schematics für die Entwicklungsabteilung\Programme (64 Bit)\2026)"_s;
    open(RunMode::Install);
    goTo(PageId::License);
    auto *license = control<QPlainTextEdit>();
    license->setPlainText(QString(license->toPlainText() + u"\n\n"_s).repeated(8));
    wait(50);
    shoot(u"license-long"_s);
    hover(license->verticalScrollBar(), u"license-long-hover"_s);
    goTo(PageId::Destination);
    control<DestinationPage>()->setPath(folder);
    wait(50);
    shoot(u"destination-long"_s);
    goTo(PageId::Tasks);
    control<ToggleCheckbox>(u"Create a desktop shortcut"_s)->click();
    goTo(PageId::Ready);
    shoot(u"ready-long-without-tasks"_s);
    m_scene.goTo(PageId::Installing);
    m_scene.report(
        0.5, folder + uR"(\library\symbols\connectors\usb-c-24-pin-receptacle.sch)",
        u"Extracting a file whose name is as long as the names that people give to files…"_s);
    wait(kSettled);
    shoot(u"installing-long"_s);
    m_scene.goTo(PageId::Finished);
    wait(4000);
    shoot(u"finished-long-without-shortcut"_s);

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
    if (arguments.size() != 3 || !QDir().mkpath(arguments[1])) {
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
    return 0;
}
