#include "wizard/installerwizard.h"

#include "engine/installerengine.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/licensepage.h"
#include "pages/systemcheckpage.h"
#include "pages/taskspage.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updatefinishedpage.h"
#include "system/compositor.h"
#include "system/installation.h"
#include "system/launch.h"
#include "system/userdata.h"
#include "widgets/animatedmark.h"
#include "wizard/celebration.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installerrail.h"
#include "wizard/installertitlebar.h"
#include "wizard/installingpage.h"
#include "wizard/nativewindow.h"
#include "wizard/runplan.h"
#include "wizard/windowshape.h"
#include "wizard/wizardpages.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFinishDelay = 500ms;
constexpr auto kIdleDelay = 780ms;

} // namespace

InstallerWizard::InstallerWizard(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint), m_idleDelay(this)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(kWindowSize);
    if (!desktopBlendsWindows())
        setMask(windowShape());
    buildChrome();
    m_pages = std::make_unique<WizardPages>(*m_pane);

    connect(&m_simulation, &SimulatedRun::progress, this, &InstallerWizard::showProgress);
    connect(&m_simulation, &SimulatedRun::currentFile, this,
            [this](const QString &path) { progressPage()->setCurrentFile(path); });
    connect(&m_simulation, &SimulatedRun::finished, this, [this] {
        completeRun();
        m_finishDelay.start();
    });

    m_finishDelay.setSingleShot(true);
    m_finishDelay.setTimerType(Qt::PreciseTimer);
    m_finishDelay.setInterval(kFinishDelay);
    connect(&m_finishDelay, &QTimer::timeout, this, &InstallerWizard::enterFinish);
    connect(&m_idleDelay, &DelayedStart::due, m_rail->mark(), &AnimatedMark::startIdle);
}

InstallerWizard::~InstallerWizard() = default;

void InstallerWizard::buildChrome()
{
    const QString title = tr("Varnel Schematics setup");
    m_titleBar = new InstallerTitleBar(title, this);
    setWindowTitle(title);
    connect(m_titleBar, &InstallerTitleBar::closeRequested, this, [this] { closeAndQuit(false); });
    connect(m_titleBar, &InstallerTitleBar::minimizeRequested, this, &QWidget::showMinimized);

    m_rail = new InstallerRail(this);
    m_pane = new InstallerPane(this);
    m_footer = new InstallerFooterBar(this);

    auto *middle = new QHBoxLayout;
    middle->setContentsMargins({});
    middle->setSpacing(0);
    middle->addWidget(m_rail);
    middle->addWidget(m_pane, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addLayout(middle, 1);
    layout->addWidget(m_footer);

    m_celebration = new Celebration(this);
}

void InstallerWizard::setEngine(InstallerEngine *engine)
{
    m_engine = engine;
}

void InstallerWizard::setUninstallerPath(const QString &path)
{
    m_uninstallerPath = path;
}

void InstallerWizard::setRunMode(RunMode mode)
{
    // While it is still known which run may be under way.
    leavePage(m_pages->page(firstPage(mode)));
    m_runMode = mode;
    const QString title = mode == RunMode::Uninstall ? tr("Varnel Schematics uninstall")
                                                     : tr("Varnel Schematics setup");
    m_titleBar->setTitle(title);
    setWindowTitle(title);
    enterPage(firstPage(mode));
    m_rail->mark()->replay();
}

void InstallerWizard::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (std::exchange(m_wasShown, true))
        return;
    presentWindow(*this);
    // Once more when the window is on screen, so that the entrance is seen; but not over the head
    // of a user who was quick enough to be somewhere else already.
    QTimer::singleShot(0, this, [this] {
        if (!m_pane->currentPage() || m_pane->currentPage() == m_pages->page(firstPage(m_runMode)))
            setRunMode(m_runMode);
    });
}

void InstallerWizard::closeEvent(QCloseEvent *event)
{
    closeAndQuit(false);
    event->accept();
}

void InstallerWizard::closeAndQuit(bool launch)
{
    if (std::exchange(m_isClosing, true))
        return;
    hide();
    QTimer::singleShot(0, this, [this, launch] {
        if (launch)
            launchApplication(m_pages->destination()->path());
        QCoreApplication::exit();
    });
}

void InstallerWizard::keyPressEvent(QKeyEvent *event)
{
    const QList<QPushButton *> buttons = m_footer->buttons();
    // A key that is held down must not run through all the pages.
    if (buttons.isEmpty() || event->isAutoRepeat())
        return QWidget::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: {
        QPushButton *button = buttons.last();
        if (InstallerFooterBar::isPrimary(button)
            || (InstallerFooterBar::isDanger(button) && button->hasFocus()))
            button->click();
        break;
    }
    case Qt::Key_Escape:
        buttons.first()->click();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void InstallerWizard::leavePage(const QWidget *next)
{
    m_pane->prepareToShow(next); // before anything that it shows is reset
    m_simulation.stop();
    m_finishDelay.stop();
    m_idleDelay.stop();
    m_celebration->stop();
    m_announcer.stop();
    for (const QMetaObject::Connection &connection : m_engineConnections)
        disconnect(connection);
    // Whatever is hidden with the focus passes it on, and that to the title bar's buttons.
    if (QWidget *focused = focusWidget())
        focused->clearFocus();
    m_footer->clear();
    m_pages->systemCheck()->resetReveal();
    progressPage()->setWaiting(false);
    m_pages->installing()->resetBar();
    m_rail->mark()->setFill(1.0);
    m_rail->mark()->startIdle();
}

void InstallerWizard::enterPage(PageId id)
{
    WizardPage *page = m_pages->page(id);
    leavePage(page);
    if (id == PageId::ConfirmUninstall && m_uninstallerPath.isEmpty())
        m_uninstallerPath = uninstallerPath();
    m_pages->prepare(id);
    // A window that opens is read out as a whole, with the page that is on it.
    const bool isNews = isVisible() && m_pane->currentPage() != page;
    m_pane->setCurrentPage(page, true);
    showFooter(pageStop(id));
    focusWayOn(isNews ? page->spokenSummary() : QString());
    if (id == PageId::SystemCheck)
        m_pages->systemCheck()->startReveal();
}

void InstallerWizard::showFooter(const PageStop &stop)
{
    m_footer->setStatusText(tr(stop.status, nullptr, m_pages->systemCheck()->checkCount()));
    for (const FooterButton &button : { stop.left, stop.right }) {
        if (button.text)
            addFooterButton(button);
    }
    if (stop.page == PageId::License) {
        QPushButton *next = m_footer->buttons().last();
        next->setEnabled(m_pages->license()->isAccepted());
        connect(m_pages->license(), &LicensePage::acceptedChanged, next, &QWidget::setEnabled);
    }
}

void InstallerWizard::addFooterButton(const FooterButton &button)
{
    QPushButton *widget = m_footer->addButton(tr(button.text), button.primary, button.danger);
    connect(widget, &QPushButton::clicked, this, [this, button] { obey(button); });
}

void InstallerWizard::focusWayOn(const QString &spoken)
{
    // The way on, so that the keyboard has a place to start from; on a page that destroys
    // something, the way back; where there is no way on yet, what has to be answered first.
    const QList<QPushButton *> buttons = m_footer->buttons();
    QWidget *place =
        InstallerFooterBar::isDanger(buttons.last()) ? buttons.first() : buttons.last();
    if (!place->isEnabled())
        place = m_pages->license()->answer();
    m_focus.give(place, spoken);
}

void InstallerWizard::obey(const FooterButton &button)
{
    switch (button.command) {
    case Command::ShowPage:
        enterPage(button.target);
        break;
    case Command::StartRun:
        startRun();
        break;
    case Command::Close:
        closeAndQuit(false);
        break;
    case Command::OpenAndClose:
        closeAndQuit(true);
        break;
    }
}

ProgressPage *InstallerWizard::progressPage() const
{
    return m_pages->progressPage(m_runMode);
}

void InstallerWizard::startRun()
{
    leavePage(progressPage());
    m_pane->setCurrentPage(progressPage(), true);
    m_footer->setStatusText(tr("Do not turn off your PC"));
    m_footer->addButton(tr("Cancel"), false, false)->setEnabled(false);
    m_rail->mark()->stopIdle();
    m_rail->mark()->setFill(runPlan(m_runMode).fillsMark ? 0.0 : 1.0);
    progressPage()->begin(runSteps(m_runMode, m_pages->confirmUninstall()->deletePreferences()));
    // A run has nothing to press; the focus is where it can be heard what is being done.
    const QString spoken = progressPage()->spokenSummary();
    m_focus.give(progressPage(), spoken);
    m_announcer.start(spoken);
    if (usesEngine())
        startEngine();
    else
        m_simulation.start(runPlan(m_runMode).simulationStep);
}

bool InstallerWizard::usesEngine() const
{
    if (!m_engine)
        return false;
    return m_runMode == RunMode::Uninstall ? !m_uninstallerPath.isEmpty()
                                           : !m_engine->setupExecutable().isEmpty();
}

void InstallerWizard::startEngine()
{
    ProgressPage *page = progressPage();
    m_engineConnections = {
        connect(m_engine, &InstallerEngine::progress, this, &InstallerWizard::showProgress),
        connect(m_engine, &InstallerEngine::currentFile, page, &ProgressPage::setCurrentFile),
        connect(m_engine, &InstallerEngine::statusChanged, this, &InstallerWizard::showStatus),
        connect(m_engine, &InstallerEngine::finished, this, &InstallerWizard::onEngineFinished),
    };
    page->setWaiting(true);
    switch (m_runMode) {
    case RunMode::Install:
        m_engine->startInstall(
            m_pages->destination()->path(),
            m_pages->tasks()->desktopShortcut() ? QStringList { u"desktopicon"_s } : QStringList());
        break;
    case RunMode::Update:
        m_engine->startInstall(installLocation(), {});
        break;
    case RunMode::Uninstall:
        m_engine->startUninstall(m_uninstallerPath);
        break;
    }
}

void InstallerWizard::showProgress(double fraction)
{
    progressPage()->setProgress(fraction);
    m_announcer.tellStep(progressPage()->currentStep());
    m_rail->mark()->setFill(runPlan(m_runMode).fillsMark ? fraction : 1.0 - fraction);
}

void InstallerWizard::showStatus(const QString &status)
{
    progressPage()->setStatus(status);
    m_announcer.tellStatus(status);
}

void InstallerWizard::onEngineFinished(bool ok, const QString &error)
{
    for (const QMetaObject::Connection &connection : m_engineConnections)
        disconnect(connection);
    if (!ok)
        return failRun(error);
    completeRun();
    if (m_runMode == RunMode::Uninstall && m_pages->confirmUninstall()->deletePreferences()) {
        // They may take a while to go, in which nothing is painted.
        m_pane->endTransition();
        progressPage()->settle();
        removeUserData();
    }
    m_finishDelay.start();
}

void InstallerWizard::completeRun()
{
    m_announcer.stop(); // the page that comes is told, which would cut this short
    progressPage()->completeSteps();
    progressPage()->setStatus(tr("Finishing up…"));
}

void InstallerWizard::failRun(const QString &error)
{
    m_announcer.stop();
    progressPage()->showError(error.isEmpty() ? tr("Setup did not complete.") : error);
    m_footer->setStatusText(tr("Setup could not finish"));
    m_footer->clear();
    addFooterButton({ .text = QT_TR_NOOP("Close"),
                      .primary = true,
                      .danger = true,
                      .command = Command::Close });
    focusWayOn(progressPage()->spokenSummary());
    m_keyGuard.start();
}

void InstallerWizard::enterFinish()
{
    enterPage(runPlan(m_runMode).finishPage);
    AnimatedMark *mark = m_rail->mark();
    mark->setFill(m_runMode == RunMode::Uninstall ? 0.0 : 1.0);
    if (m_runMode == RunMode::Uninstall) {
        mark->replay();
        m_pages->uninstallComplete()->start();
        return;
    }
    mark->stopIdle(); // it floats once it has come in
    mark->replay();
    m_celebration->start(m_runMode == RunMode::Update ? m_pages->updateFinished()->seal()
                                                      : m_pages->finished()->seal());
    m_idleDelay.start(kIdleDelay);
}
