#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/taskspage.h"
#include "theme/thememanager.h"
#include "widgets/togglecheckbox.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestTasksPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void shortcutIsWantedAtFirst();
    void clickingTheBoxChangesTheAnswer();
    void fits();
};

void TestTasksPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestTasksPage::layout()
{
    TasksPage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Select Additional Tasks"_s,
                 u"gap 5"_s,
                 u"label: Which additional task should be performed while installing "
                 "Varnel Schematics?"_s,
                 u"gap 16"_s,
                 u"ToggleCheckbox: Create a desktop shortcut"_s,
                 u"stretch"_s,
             }));
}

void TestTasksPage::shortcutIsWantedAtFirst()
{
    TasksPage page;
    QVERIFY(page.desktopShortcut());
    QVERIFY(page.findChild<ToggleCheckbox *>()->isChecked());
}

void TestTasksPage::clickingTheBoxChangesTheAnswer()
{
    TasksPage page;
    page.resize(kPageSize);
    page.show();
    auto *box = page.findChild<ToggleCheckbox *>();
    QTest::mouseClick(box, Qt::LeftButton);
    QVERIFY(!page.desktopShortcut());
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(box->width() - 1, 1));
    QVERIFY(page.desktopShortcut());
    QTest::keyClick(box, Qt::Key_Space);
    QVERIFY(!page.desktopShortcut());
}

void TestTasksPage::fits()
{
    TasksPage page;
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestTasksPage)
#include "tst_taskspage.moc"
