#include "wizard/pageflow.h"

#include "pages/runmode.h"

#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A footer button in words: "Next (primary) -> License".
QString describe(const FooterButton &button)
{
    static const QStringList pages {
        u"Welcome"_s,          u"License"_s,      u"SystemCheck"_s,
        u"Destination"_s,      u"Tasks"_s,        u"Ready"_s,
        u"Installing"_s,       u"Finished"_s,     u"UpdateAvailable"_s,
        u"ReadyToUpdate"_s,    u"Updating"_s,     u"UpdateFinished"_s,
        u"ConfirmUninstall"_s, u"Uninstalling"_s, u"UninstallComplete"_s,
    };
    if (!button.text)
        return {};
    QString text = QString::fromUtf8(button.text);
    if (button.primary)
        text += u" (primary)"_s;
    if (button.danger)
        text += u" (danger)"_s;
    switch (button.command) {
    case Command::ShowPage:
        return text + u" -> "_s + pages[int(button.target)];
    case Command::StartRun:
        return text + u" -> run"_s;
    case Command::Close:
        return text + u" -> close"_s;
    case Command::OpenAndClose:
        return text + u" -> open and close"_s;
    }
    return {};
}

} // namespace

class TestPageFlow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void stops_data();
    void stops();
    void everyStopIsListedOnce();
    void noWayLeadsOntoAProgressPage();
    void modesHaveTheirNumbers();
    void pagesAreInTheOrderInWhichTheyAreBuilt();
};

void TestPageFlow::stops_data()
{
    QTest::addColumn<PageId>("page");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");

    QTest::newRow("welcome") << PageId::Welcome << u"Administrator rights required"_s
                             << u"Cancel -> close"_s << u"Next (primary) -> License"_s;
    QTest::newRow("license") << PageId::License << u"Read the license before continuing"_s
                             << u"Back -> Welcome"_s << u"Next (primary) -> SystemCheck"_s;
    QTest::newRow("system check") << PageId::SystemCheck << u"%n requirement(s) checked"_s
                                  << u"Back -> License"_s << u"Next (primary) -> Destination"_s;
    QTest::newRow("destination") << PageId::Destination << u"Choose where Varnel Schematics lives"_s
                                 << u"Back -> SystemCheck"_s << u"Next (primary) -> Tasks"_s;
    QTest::newRow("tasks") << PageId::Tasks << u"Optional — safe to skip"_s
                           << u"Back -> Destination"_s << u"Next (primary) -> Ready"_s;
    QTest::newRow("ready") << PageId::Ready << u"Review before you install"_s << u"Back -> Tasks"_s
                           << u"Install (primary) -> run"_s;
    QTest::newRow("finished") << PageId::Finished << u"Finished in 51 seconds"_s
                              << u"Close -> close"_s
                              << u"Open Varnel Schematics (primary) -> open and close"_s;

    QTest::newRow("update offer") << PageId::UpdateAvailable
                                  << u"Recommended — includes performance fixes"_s
                                  << u"Skip -> close"_s
                                  << u"Update Now (primary) -> ReadyToUpdate"_s;
    QTest::newRow("ready to update")
        << PageId::ReadyToUpdate << u"Review before you update"_s << u"Back -> UpdateAvailable"_s
        << u"Update (primary) -> run"_s;
    QTest::newRow("updated") << PageId::UpdateFinished << u"Updated in 38 seconds"_s
                             << u"Close -> close"_s
                             << u"Open Varnel Schematics (primary) -> open and close"_s;

    QTest::newRow("uninstall confirmation")
        << PageId::ConfirmUninstall << u"Administrator rights required"_s << u"Cancel -> close"_s
        << u"Uninstall (primary) (danger) -> run"_s;
    QTest::newRow("uninstalled") << PageId::UninstallComplete << u"Uninstalled in 24 seconds"_s
                                 << u"Close -> close"_s << QString();
}

void TestPageFlow::stops()
{
    QFETCH(PageId, page);
    const PageStop &stop = pageStop(page);
    QCOMPARE(stop.page, page);
    QTEST(QString::fromUtf8(stop.status), "status");
    QTEST(describe(stop.left), "left");
    QTEST(describe(stop.right), "right");
}

void TestPageFlow::everyStopIsListedOnce()
{
    QSet<int> pages;
    for (const PageStop &stop : pageStops())
        pages.insert(int(stop.page));
    QCOMPARE(pageStops().size(), size_t(12));
    QCOMPARE(pages.size(), 12);
    for (PageId page : { PageId::Installing, PageId::Updating, PageId::Uninstalling })
        QVERIFY(!pages.contains(int(page)));
}

void TestPageFlow::noWayLeadsOntoAProgressPage()
{
    for (const PageStop &stop : pageStops()) {
        for (const FooterButton &button : { stop.left, stop.right }) {
            if (!button.text || button.command != Command::ShowPage)
                continue;
            QCOMPARE(pageStop(button.target).page, button.target);
        }
    }
}

void TestPageFlow::modesHaveTheirNumbers()
{
    QCOMPARE(int(RunMode::Install), 0);
    QCOMPARE(int(RunMode::Update), 1);
    QCOMPARE(int(RunMode::Uninstall), 2);
}

void TestPageFlow::pagesAreInTheOrderInWhichTheyAreBuilt()
{
    const PageId order[] = {
        PageId::Welcome,          PageId::License,      PageId::SystemCheck,
        PageId::Destination,      PageId::Tasks,        PageId::Ready,
        PageId::Installing,       PageId::Finished,     PageId::UpdateAvailable,
        PageId::ReadyToUpdate,    PageId::Updating,     PageId::UpdateFinished,
        PageId::ConfirmUninstall, PageId::Uninstalling, PageId::UninstallComplete,
    };
    QCOMPARE(int(std::size(order)), kPageCount);
    for (int i = 0; i < kPageCount; ++i)
        QCOMPARE(int(order[i]), i);
}

QTEST_APPLESS_MAIN(TestPageFlow)
#include "tst_pageflow.moc"
