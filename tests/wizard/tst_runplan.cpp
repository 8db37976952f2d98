#include "wizard/runplan.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestRunPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void plans_data();
    void plans();
    void steps_data();
    void steps();
};

void TestRunPlan::plans_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<PageId>("progressPage");
    QTest::addColumn<PageId>("finishPage");
    QTest::addColumn<bool>("fillsMark");
    QTest::addColumn<double>("simulationStep");
    QTest::newRow("install") << RunMode::Install << PageId::Installing << PageId::Finished << true
                             << 2.2;
    QTest::newRow("update") << RunMode::Update << PageId::Updating << PageId::UpdateFinished << true
                            << 2.4;
    QTest::newRow("uninstall") << RunMode::Uninstall << PageId::Uninstalling
                               << PageId::UninstallComplete << false << 2.4;
}

void TestRunPlan::plans()
{
    QFETCH(RunMode, mode);
    const RunPlan &plan = runPlan(mode);
    QTEST(plan.progressPage, "progressPage");
    QTEST(plan.finishPage, "finishPage");
    QTEST(plan.fillsMark, "fillsMark");
    QTEST(plan.simulationStep, "simulationStep");
}

void TestRunPlan::steps_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<bool>("removesUserData");
    QTest::addColumn<QStringList>("steps");
    const QStringList install { u"Extracting application files"_s, u"Installing WebView2 Runtime"_s,
                                u"Registering .sch and .pcb file types"_s,
                                u"Creating shortcuts"_s };
    const QStringList update { u"Backing up your settings"_s, u"Replacing application files"_s,
                               u"Migrating configuration"_s, u"Restarting services"_s };
    const QStringList uninstall { u"Stopping Varnel Schematics"_s, u"Removing application files"_s,
                                  u"Removing shortcuts"_s, u"Unregistering file types"_s };
    QTest::newRow("install") << RunMode::Install << false << install;
    QTest::newRow("install removes nothing") << RunMode::Install << true << install;
    QTest::newRow("update") << RunMode::Update << false << update;
    QTest::newRow("update removes nothing") << RunMode::Update << true << update;
    QTest::newRow("uninstall") << RunMode::Uninstall << false << uninstall;
    QTest::newRow("uninstall with the user's data")
        << RunMode::Uninstall << true << uninstall + QStringList { u"Removing user data"_s };
}

void TestRunPlan::steps()
{
    QFETCH(RunMode, mode);
    QFETCH(bool, removesUserData);
    QTEST(runSteps(mode, removesUserData), "steps");
}

QTEST_APPLESS_MAIN(TestRunPlan)
#include "tst_runplan.moc"
