#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/systemcheckpage.h"
#include "pages/timerwatch.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"

#include <QGraphicsOpacityEffect>
#include <QJsonObject>
#include <QPointer>
#include <QStorageInfo>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using CheckRow = SystemCheckPage::CheckRow;

const CheckResult kOff { u"Smart App Control"_s, u"Off"_s, true };
const CheckResult kOn { u"Smart App Control"_s, u"On — blocks the app"_s, false };

constexpr int kPatience = 10'000; // ms
/// When the rows start to appear, in ms after startReveal(), and the warning after them.
const QList<int> kRowShots { 120, 230, 340, 450, 560, 670, 780, 890, 1000 };
constexpr int kWarningShot = 1150;
constexpr int kLongAfter = 1300;

struct ShownPage : SystemCheckPage
{
    ShownPage()
    {
        resize(kPageSize);
        show();
        runChecks({});
    }

    /// The rows of the last run, in their order.
    [[nodiscard]] QList<CheckRow *> rows() const
    {
        QList<CheckRow *> rows;
        for (CheckRow *row : findChildren<CheckRow *>()) {
            if (!row->isHidden())
                rows.append(row);
        }
        return rows;
    }
    /// The row of that finding.
    [[nodiscard]] CheckRow *row(const QString &label) const
    {
        const QList<CheckRow *> all = rows();
        const auto it = std::find_if(all.begin(), all.end(), [&label](const CheckRow *row) {
            return row->result().label == label;
        });
        return it == all.end() ? nullptr : *it;
    }
    [[nodiscard]] CheckResult smartAppControl() const { return row(kOff.label)->result(); }
    [[nodiscard]] QLabel *warning() const { return findChild<QLabel *>(u"callout"_s); }
    [[nodiscard]] double warningOpacity() const
    {
        return qobject_cast<QGraphicsOpacityEffect *>(warning()->graphicsEffect())->opacity();
    }
    [[nodiscard]] bool isAllHidden() const
    {
        for (const CheckRow *row : rows()) {
            if (row->reveal() != 0.0 || row->isRevealed())
                return false;
        }
        return warningOpacity() == 0.0 && !warning()->isVisible();
    }
};

} // namespace

class TestSystemCheckPage : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void rootIsProbedWithoutAFolder();
    void secondRunReplacesTheRows();
    void rowsComeOneAfterAnother();
    void warningComesAfterTheRows();
    void newRunCallsOffPendingStarts();

private:
    void recordSmartAppControl(int state);

    Sandbox m_sandbox;
};

void TestSystemCheckPage::init()
{
    LightThemeTest::init();
    recordSmartAppControl(0);
}

void TestSystemCheckPage::recordSmartAppControl(int state)
{
    m_sandbox.setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\CI\Policy)"_s,
                              QJsonObject { { u"VerifiedAndReputablePolicyState"_s, state } } } });
}

void TestSystemCheckPage::rootIsProbedWithoutAFolder()
{
    const ShownPage page;
    const QString value = page.row(u"Disk space"_s)->result().value;
    const QString volume = QDir::toNativeSeparators(QStorageInfo(QDir::rootPath()).rootPath());
    QVERIFY2(value.endsWith(u" on "_s + volume), qPrintable(value));
}

void TestSystemCheckPage::secondRunReplacesTheRows()
{
    ShownPage page;
    QList<QPointer<CheckRow>> old;
    for (CheckRow *row : page.rows()) {
        row->setReveal(1.0);
        old.append(row);
    }
    page.runChecks({});
    // The old rows are off the screen at once, though perhaps not deleted yet.
    QCOMPARE(page.rows().size(), 9);
    QVERIFY(page.isAllHidden());
    for (const QPointer<CheckRow> &row : old)
        QTRY_VERIFY(!row);
}

void TestSystemCheckPage::rowsComeOneAfterAnother()
{
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    const QList<CheckRow *> rows = page.rows();
    QVERIFY(page.isAllHidden());
    page.startReveal();
    for (qsizetype i = 0; i < rows.size(); ++i) {
        QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), i + 1, kPatience);
        for (qsizetype j = 0; j < rows.size(); ++j)
            QCOMPARE(rows[j]->isRevealed(), j <= i);
        QCOMPARE(rows[i]->reveal(), 0.0);
    }
    clock.pass(300);
    for (const CheckRow *row : rows)
        QCOMPARE(row->reveal(), 1.0);
    // There is no cause for the warning.
    QTest::qWait(kLongAfter - kRowShots.last());
    QCOMPARE(watch.shots(), kRowShots);
}

void TestSystemCheckPage::warningComesAfterTheRows()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    QCOMPARE(page.smartAppControl(), kOn);
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 10, kPatience);
    QCOMPARE(watch.shots(), kRowShots + QList<int> { kWarningShot });
    QCOMPARE(page.warningOpacity(), 0.0);
    clock.pass(390);
    QVERIFY(page.warningOpacity() > 0.5 && page.warningOpacity() < 1.0);
    page.setSmartAppControlOn(false);
    QCOMPARE(page.smartAppControl(), kOff);
    for (int time : { 0, 500 }) { // its animation has been stopped, not only set back
        clock.pass(time);
        QVERIFY(!page.warning()->isVisible());
    }
    page.setSmartAppControlOn(true);
    QCOMPARE(page.smartAppControl(), kOn);
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 20, kPatience);
    clock.pass(400);
    QCOMPARE(page.warningOpacity(), 1.0);
    QVERIFY(page.warning()->isVisible());
}

// An old start neither reaches a new row nor brings the warning.
void TestSystemCheckPage::newRunCallsOffPendingStarts()
{
    recordSmartAppControl(1);
    TimerWatch watch;
    ShownPage page;
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 2, kPatience);
    page.runChecks({});
    watch.clear();
    QTest::qWait(kLongAfter);
    QCOMPARE(watch.shots(), QList<int>());
    QVERIFY(page.isAllHidden());
}

QTEST_MAIN(TestSystemCheckPage)
#include "tst_systemcheckpage.moc"
