#include "wizard/installerwizard.h"

#include "bundle/carriedengine.h"
#include "engine/installerengine.h"
#include "pages/wizardpage.h"
#include "system/compositor.h"
#include "system/installation.h"
#include "system/launch.h"
#include "system/runguard.h"
#include "system/userdata.h"
#include "widgets/animatedmark.h"
#include "wizard/celebration.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installerrail.h"
#include "wizard/installertitlebar.h"
#include "wizard/nativewindow.h"
#include "wizard/progresspage.h"
#include "wizard/realrun.h"
#include "wizard/runplan.h"
#include "wizard/simulatedrun.h"
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

using namespace std::chrono_literals;

namespace {

constexpr auto kUnpackDelay = 1500ms;
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
    m_pages = createPages();
    for (WizardPage *page : std::as_const(m_pages))
        m_pane->addPage(page);
    m_choices.folder = defaultInstallDir();

    m_unpackDelay.setSingleShot(true);
    m_unpackDelay.setInterval(kUnpackDelay);
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

void InstallerWizard::setCarriedEngine(CarriedEngine *engine)
{
    m_carriedEngine = engine;
    connect(&m_unpackDelay, &QTimer::timeout, engine, &CarriedEngine::start);
}

void InstallerWizard::showOnly(PageId page)
{
    m_onlyPage = page;
    setRunMode(m_choices.mode);
}

void InstallerWizard::setUninstallerPath(const QString &path)
{
    m_choices.uninstaller = path;
}

void InstallerWizard::setRunMode(RunMode mode)
{
    m_choices.mode = mode;
    const QString title = mode == RunMode::Uninstall ? tr("Varnel Schematics uninstall")
                                                     : tr("Varnel Schematics setup");
    m_titleBar->setTitle(title);
    setWindowTitle(title);
    enterPage(firstPage());
    if (m_engine && mode == RunMode::Uninstall)
        m_engine->guard(m_choices.uninstaller);
    m_rail->mark()->replay();
}

void InstallerWizard::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (std::exchange(m_wasShown, true))
        return;
    presentWindow(*this);
    // Once more when the window is on screen, so that the entrance is seen, unless the user has
    // left the first page by then.
    QTimer::singleShot(0, this, [this] {
        if (!m_page || m_page == page(firstPage()))
            setRunMode(m_choices.mode);
        const bool isNeeded = m_engine && m_engine->setupExecutable().isEmpty() && !m_onlyPage
            && m_choices.mode != RunMode::Uninstall;
        if (m_carriedEngine && isNeeded)
            m_unpackDelay.start();
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
            launchApplication(m_choices.folder);
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

void InstallerWizard::leavePage(const WizardPage *next)
{
    m_pane->prepareToShow(next); // before anything that it shows is reset
    m_run.reset();
    m_runGuard.reset();
    m_finishDelay.stop();
    m_idleDelay.stop();
    m_celebration->stop();
    m_announcer.stop();
    // Hiding the widget that has the focus would move it to the title bar.
    if (QWidget *focused = focusWidget())
        focused->clearFocus();
    m_footer->clear();
    if (m_page)
        m_page->leave(m_choices);
    m_rail->mark()->setFill(1.0);
    m_rail->mark()->startIdle();
}

void InstallerWizard::showPage(WizardPage *page)
{
    leavePage(page);
    page->prepare(m_choices);
    m_page = page;
    m_pane->setCurrentPage(page, true);
}

void InstallerWizard::enterPage(PageId id)
{
    // A window that opens is read out as a whole, with the page that is on it.
    const bool isNews = isVisible() && m_page != page(id);
    showPage(page(id));
    showFooter(pageStop(id));
    focusDefaultButton(isNews ? m_page->spokenSummary() : QString());
    m_page->start();
}

void InstallerWizard::showFooter(const PageStop &stop)
{
    m_footer->setStatusText(tr(stop.status, nullptr, m_page->itemCount()));
    QPushButton *last = nullptr;
    for (const FooterButton &button : { stop.left, stop.right }) {
        if (button.text)
            last = addFooterButton(button);
    }
    last->setEnabled(m_page->isComplete());
    connect(m_page, &WizardPage::completeChanged, last, &QWidget::setEnabled);
}

QPushButton *InstallerWizard::addFooterButton(const FooterButton &button)
{
    QPushButton *widget = m_footer->addButton(tr(button.text), button.primary, button.danger);
    connect(widget, &QPushButton::clicked, this, [this, button] { execute(button); });
    return widget;
}

void InstallerWizard::focusDefaultButton(const QString &spoken)
{
    // The last button; on a page that removes something the first one, so that no key starts the
    // removal by mistake; where the last one is disabled, the control that enables it.
    const QList<QPushButton *> buttons = m_footer->buttons();
    QWidget *place =
        InstallerFooterBar::isDanger(buttons.last()) ? buttons.first() : buttons.last();
    if (!place->isEnabled())
        place = m_page->firstUnanswered();
    m_focus.give(place, spoken);
}

void InstallerWizard::execute(const FooterButton &button)
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

PageId InstallerWizard::firstPage() const
{
    return m_onlyPage.value_or(runPlan(m_choices.mode).firstPage);
}

ProgressPage *InstallerWizard::progressPage() const
{
    return qobject_cast<ProgressPage *>(page(runPlan(m_choices.mode).progressPage));
}

void InstallerWizard::startRun()
{
    ProgressPage *page = progressPage();
    const RunPlan &plan = runPlan(m_choices.mode);
    showPage(page);
    m_footer->setStatusText(tr("Do not turn off your PC"));
    m_footer->addButton(tr("Cancel"), false, false)->setEnabled(false);
    m_rail->mark()->stopIdle();
    m_rail->mark()->setFill(plan.fillsMark ? 0.0 : 1.0);
    // A run has no control. The page takes the focus, so that a screen reader reads it.
    const QString spoken = page->spokenSummary();
    m_focus.give(page, spoken);
    m_announcer.start(spoken);

    if (usesEngine())
        m_run = std::make_unique<RealRun>(*m_engine, m_carriedEngine, m_choices);
    else
        m_run = std::make_unique<SimulatedRun>(plan.simulationStep);
    connect(m_run.get(), &SetupRun::progress, this, &InstallerWizard::showProgress);
    connect(m_run.get(), &SetupRun::currentFile, page, &ProgressPage::setCurrentFile);
    connect(m_run.get(), &SetupRun::statusChanged, this, &InstallerWizard::showStatus);
    connect(m_run.get(), &SetupRun::finished, this, &InstallerWizard::onRunFinished);
    page->setWaiting(m_run->isReal()); // a simulation has figures at once
    if (m_run->isReal())
        m_runGuard = std::make_unique<RunGuard>(*windowHandle(), tr(plan.underWay));
    m_run->start();
}

bool InstallerWizard::usesEngine() const
{
    if (!m_engine)
        return false;
    if (m_carriedEngine)
        return true; // a download never simulates
    return m_choices.mode == RunMode::Uninstall ? !m_choices.uninstaller.isEmpty()
                                                : !m_engine->setupExecutable().isEmpty();
}

void InstallerWizard::showProgress(double fraction)
{
    progressPage()->setProgress(fraction);
    if (m_runGuard)
        m_runGuard->setProgress(fraction);
    m_announcer.tellStep(progressPage()->currentStep());
    m_rail->mark()->setFill(runPlan(m_choices.mode).fillsMark ? fraction : 1.0 - fraction);
}

void InstallerWizard::showStatus(const QString &status)
{
    progressPage()->setStatus(status);
    m_announcer.tellStatus(status);
}

void InstallerWizard::onRunFinished(bool ok, const QString &error)
{
    // A crashed engine may report once more after this.
    m_run->disconnect();
    m_announcer.stop(); // the page that comes is announced, which would interrupt this
    if (!ok)
        return failRun(error);
    completeRun();
    if (m_choices.mode == RunMode::Uninstall && m_choices.removesPreferences && m_run->isReal()) {
        // They may take a while to go, in which nothing is painted.
        m_pane->endTransition();
        progressPage()->settle();
        removeUserData();
    }
    m_runGuard.reset();
    m_finishDelay.start();
}

void InstallerWizard::completeRun()
{
    progressPage()->completeSteps();
    progressPage()->setStatus(tr("Finishing up…"));
}

void InstallerWizard::failRun(const QString &error)
{
    if (m_runGuard)
        m_runGuard->fail();
    progressPage()->showError(error.isEmpty() ? tr("Setup did not complete.") : error);
    m_footer->setStatusText(tr("Setup could not finish"));
    m_footer->clear();
    addFooterButton({ .text = QT_TR_NOOP("Close"),
                      .primary = true,
                      .danger = true,
                      .command = Command::Close });
    focusDefaultButton(progressPage()->spokenSummary());
    m_keyGuard.start();
}

void InstallerWizard::enterFinish()
{
    const RunPlan &plan = runPlan(m_choices.mode);
    enterPage(plan.finishPage);
    AnimatedMark *mark = m_rail->mark();
    mark->setFill(plan.fillsMark ? 1.0 : 0.0);
    SealCheck *seal = m_page->seal();
    if (seal)
        mark->stopIdle(); // it floats once it has come in
    mark->replay();
    if (seal) {
        m_celebration->start(seal);
        m_idleDelay.start(kIdleDelay);
    }
}
