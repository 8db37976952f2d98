#include "longnames.h"

#include "camera.h"
#include "pages/checkrow.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/readypage.h"
#include "pages/readytoupdatepage.h"
#include "pages/updateavailablepage.h"
#include "pages/updatefinishedpage.h"
#include "wizard/progresspage.h"

#include <QLabel>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 kFree = 102'327'226'368; // bytes

/// Longer than the confetti flies.
constexpr int kCelebrated = 4000; // ms

/// Texts from outside of one length.
struct Names
{
    QString length; ///< for the picture's name
    QString folder;
    QString volume;
    QString version;
    QString processor;
};

/// `pattern` over and over, so that it is a text of that length together with `end`.
QString repeated(const QString &pattern, qsizetype length, const QString &end)
{
    return pattern.repeated(length / pattern.size() + 1).left(length - end.size()) + end;
}

QList<Names> names()
{
    const QString folders = uR"(Boards & <Parts>\firstname.lastname\Départements\)"_s;
    QList<Names> result;
    for (const int length : { 5, 60, 150, 260 }) {
        result.append(
            { .length = u"%1-letters"_s.arg(length),
              .folder = uR"(D:\)"_s
                  + repeated(folders, length - 3, length < 20 ? QString() : uR"(\Varnel-x64)"_s),
              .volume = uR"(\\)"_s + repeated(uR"(server\share\)"_s, length - 2, u"\\"_s),
              .version = repeated(u"1.6.8-beta.20260130+build."_s, length, {}),
              .processor = repeated(u"Twelve-Core Processor "_s, length, u"9"_s) });
    }
    const QString word(150, u'w');
    result.append({ .length = u"one-word"_s,
                    .folder = uR"(D:\)"_s + word,
                    .volume = uR"(\\)"_s + word,
                    .version = word,
                    .processor = word });
    return result;
}

class LongNames : public Camera
{
public:
    using Camera::Camera;

    void install();
    void update();
    void uninstall();

private:
    /// Shows all names on the page that is open, one after another.
    template <typename Show>
    void shootNames(const QString &name, Show show)
    {
        for (const Names &names : names()) {
            show(names);
            wait(50);
            shoot(name + u'-' + names.length);
        }
    }
    void showFindings(const Names &names);
    void showSpace(const Names &names);
};

void LongNames::showFindings(const Names &names)
{
    for (auto *row : m_scene.window().findChildren<SystemCheckPage::CheckRow *>()) {
        if (row->result().label == "Disk space"_L1)
            row->setResult(judgeDiskSpace(kFree, names.volume));
        else if (row->result().label == "Processor"_L1)
            row->setResult(judgeProcessor(names.processor, 3793, {}));
    }
}

void LongNames::showSpace(const Names &names)
{
    for (QLabel *label : m_scene.window().findChildren<QLabel *>()) {
        if (label->isVisible() && label->text().contains(u" required · "_s))
            label->setText(judgeDiskSpace(kFree, names.volume).value);
    }
}

void LongNames::install()
{
    open(RunMode::Install);
    goTo(PageId::SystemCheck);
    shootNames(u"system-check"_s, [this](const Names &names) { showFindings(names); });
    goTo(PageId::Destination);
    shootNames(u"destination"_s, [this](const Names &names) {
        control<DestinationPage>()->setPath(names.folder);
        showSpace(names);
    });
    goTo(PageId::Ready);
    shootNames(u"ready"_s, [this](const Names &names) {
        control<ReadyPage>()->setSummary(names.folder, true);
    });
    goTo(PageId::Installing);
    m_scene.report(0.43, {}, {});
    wait(kSettled);
    shootNames(u"installing"_s, [this](const Names &names) {
        m_scene.report(0.43, names.folder, u"Extracting "_s + names.processor);
    });
    m_scene.goTo(PageId::Finished);
    wait(kCelebrated);
    shootNames(u"finished"_s, [this](const Names &names) {
        control<FinishedPage>()->setResult(names.folder, true);
    });
}

void LongNames::update()
{
    open(RunMode::Update);
    wait(kSettled);
    shootNames(u"update-available"_s, [this](const Names &names) {
        control<UpdateAvailablePage>()->setVersions(names.version, u"1.6.9"_s);
    });
    goTo(PageId::ReadyToUpdate);
    shootNames(u"ready-to-update"_s, [this](const Names &names) {
        control<ReadyToUpdatePage>()->setDetails(names.version, names.folder);
    });
    goTo(PageId::Updating);
    m_scene.report(0.43, {}, {});
    wait(kSettled);
    shootNames(u"updating-failed"_s, [this](const Names &names) {
        m_scene.report(0.43, names.folder, {});
        control<ProgressPage>()->showError(
            u"A fatal error occurred during installation.  There is no room for %1.  "
            "(log: %2)"_s.arg(names.processor.repeated(3), names.folder + u".log"));
    });
    m_scene.goTo(PageId::UpdateFinished);
    wait(kCelebrated);
    shootNames(u"update-finished"_s, [this](const Names &names) {
        control<UpdateFinishedPage>()->setVersion(names.version);
    });
}

void LongNames::uninstall()
{
    open(RunMode::Uninstall);
    wait(kSettled);
    shootNames(u"confirm-uninstall"_s, [this](const Names &names) {
        control<ConfirmUninstallPage>()->setVersion(names.version);
    });
}

} // namespace

void takePicturesOfLongNames(const QString &folder)
{
    LongNames names(folder);
    names.install();
    names.update();
    names.uninstall();
}
