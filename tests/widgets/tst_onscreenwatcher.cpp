#include "pages/strictwarnings.h"
#include "widgets/onscreenwatcher.h"

#include <QSignalSpy>
#include <QWidget>

class TestOnScreenWatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void childOfAWindow();
    void topLevel();
    void minimisedWindow();
    void minimisedBeforeItIsShown();
    void movedToAnotherWindow();
    void ancestorHides();
    void watcherGoesFirst();
};

void TestOnScreenWatcher::childOfAWindow()
{
    QWidget window;
    QWidget child(&window);
    const OnScreenWatcher watcher(&child);
    const QSignalSpy changed(&watcher, &OnScreenWatcher::changed);
    QVERIFY(!watcher.isOnScreen());
    window.show();
    QVERIFY(watcher.isOnScreen());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.last().first().toBool(), true);
    child.hide();
    QVERIFY(!watcher.isOnScreen());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(changed.last().first().toBool(), false);
    child.show();
    QVERIFY(watcher.isOnScreen());
    window.hide();
    QVERIFY(!watcher.isOnScreen());
    QCOMPARE(changed.count(), 4);
}

void TestOnScreenWatcher::topLevel()
{
    QWidget window;
    const OnScreenWatcher watcher(&window);
    const QSignalSpy changed(&watcher, &OnScreenWatcher::changed);
    window.show();
    QVERIFY(watcher.isOnScreen());
    window.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!watcher.isOnScreen(), 10000);
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10000);
    window.hide();
    QVERIFY(!watcher.isOnScreen());
    QCOMPARE(changed.count(), 4);
}

void TestOnScreenWatcher::minimisedWindow()
{
    QWidget window;
    QWidget child(&window);
    const OnScreenWatcher watcher(&child);
    window.show();
    QVERIFY(watcher.isOnScreen());
    window.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!watcher.isOnScreen(), 10000);
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10000);
    child.hide();
    window.showMinimized();
    window.showNormal();
    QCoreApplication::processEvents();
    QVERIFY(!watcher.isOnScreen());
}

void TestOnScreenWatcher::minimisedBeforeItIsShown()
{
    QWidget window;
    QWidget child(&window);
    const OnScreenWatcher watcher(&child);
    window.showMinimized();
    QCoreApplication::processEvents();
    QVERIFY(!watcher.isOnScreen());
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10000);
}

void TestOnScreenWatcher::movedToAnotherWindow()
{
    QWidget first;
    QWidget second;
    auto *child = new QWidget(&first);
    const OnScreenWatcher &watcher = *new OnScreenWatcher(child);
    first.show();
    second.show();
    QVERIFY(watcher.isOnScreen());
    child->setParent(&second);
    QVERIFY(!watcher.isOnScreen());
    child->show();
    QVERIFY(watcher.isOnScreen());
    first.showMinimized();
    QCoreApplication::processEvents();
    QVERIFY(watcher.isOnScreen());
    second.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!watcher.isOnScreen(), 10000);
    second.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10000);
    child->setParent(&first);
    child->show();
    QVERIFY(!watcher.isOnScreen()); // that window is still minimised
    first.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10000);
    child->setParent(nullptr);
    QVERIFY(!watcher.isOnScreen());
    child->show();
    QVERIFY(watcher.isOnScreen());
    delete child;
}

void TestOnScreenWatcher::ancestorHides()
{
    QWidget window;
    auto *page = new QWidget(&window);
    auto *child = new QWidget(page);
    const OnScreenWatcher watcher(child);
    window.show();
    QVERIFY(watcher.isOnScreen());
    page->hide();
    QVERIFY(!watcher.isOnScreen());
    window.showMinimized();
    window.showNormal();
    QCoreApplication::processEvents();
    QVERIFY(!watcher.isOnScreen());
    page->show();
    QVERIFY(watcher.isOnScreen());
}

void TestOnScreenWatcher::watcherGoesFirst()
{
    QWidget window;
    auto *child = new QWidget(&window);
    {
        const OnScreenWatcher watcher(child);
        window.show();
    }
    window.showMinimized();
    window.showNormal();
    delete child;
    QCoreApplication::processEvents();
    QVERIFY(window.isVisible());
}

QTEST_MAIN(TestOnScreenWatcher)
#include "tst_onscreenwatcher.moc"
