#include "pages/checkrow.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerrail.h"
#include "wizard/installertitlebar.h"
#include "wizard/screenchange.h"
#include "wizard/windowshape.h"
#include "wizard/wizardtest.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QProcess>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What `widget` shows in a picture of its window.
QImage partOf(const QImage &picture, const QWidget *widget)
{
    const double ratio = picture.devicePixelRatio();
    const QRectF place(widget->mapTo(widget->window(), QPoint()), widget->size());
    return picture.copy(
        QRect(QPoint(qRound(place.left() * ratio), qRound(place.top() * ratio)),
              QPoint(qRound(place.right() * ratio) - 1, qRound(place.bottom() * ratio) - 1)));
}

/// A device pixel beside the window's corners that shows what is behind the window.
QPoint holeIn(const QImage &picture)
{
    const int corner = qCeil(kCornerRadius * picture.devicePixelRatio());
    for (int y = 0; y < picture.height(); ++y) {
        const bool hasCorners = y < corner || y >= picture.height() - corner;
        const int left = hasCorners ? corner : 0;
        for (int x = left; x < picture.width() - left; ++x) {
            if (qAlpha(picture.pixel(x, y)) < 255)
                return { x, y };
        }
    }
    return { -1, -1 };
}

} // namespace

/// The window on a row of screens, each of another scale. They are described in screens.json.
class TestInstallerWizardScreens : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void linesTouchTheirEdges_data();
    void linesTouchTheirEdges();
    void dragToAnotherScreen();
    void screensChangeDuringARun();
};

void TestInstallerWizardScreens::linesTouchTheirEdges_data()
{
    QTest::addColumn<QScreen *>("screen");
    for (QScreen *screen : QGuiApplication::screens())
        QTest::newRow(qPrintable(screen->name())) << screen;
}

// Nothing shows between the parts of the window, or between a line and the edge that it marks,
// though at most ratios they begin somewhere between two device pixels.
void TestInstallerWizardScreens::linesTouchTheirEdges()
{
    QFETCH(QScreen *, screen);
    qputenv("VARNEL_REDUCED_MOTION", "1"); // all of a page is there at once
    WizardDriver driver { QString() };
    driver.wizard.move(screen->geometry().center() - driver.wizard.rect().center());
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s) && driver.click(kAccept) && driver.press(u"Next"_s));
    QVERIFY(driver.shows("SystemCheckPage"));
    const auto rows = driver.wizard.findChildren<SystemCheckPage::CheckRow *>();
    QVERIFY(!rows.isEmpty());
    for (const auto *row : rows)
        QTRY_COMPARE(row->reveal(), 1.0);

    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const QColor line = themedColor(u"@INS_LINE"_s);
        const QImage picture = driver.wizard.grab().toImage();
        QCOMPARE(picture.devicePixelRatio(), screen->devicePixelRatio());
        QCOMPARE(holeIn(picture), QPoint(-1, -1));
        QVERIFY(hasHairline(partOf(picture, driver.titleBar), Qt::BottomEdge, line));
        QVERIFY(hasHairline(partOf(picture, driver.footer), Qt::TopEdge, line));
        const auto *rail = driver.find<InstallerRail>();
        QVERIFY(hasHairline(partOf(picture, rail), Qt::RightEdge, line));
        for (const auto *row : rows)
            QVERIFY(hasHairline(partOf(picture, row), Qt::BottomEdge, line));
    }
}

void TestInstallerWizardScreens::dragToAnotherScreen()
{
    WizardDriver driver { QString() };
    const auto middleOf = [&driver](const QScreen *screen) {
        return screen->geometry().center() - driver.wizard.rect().center();
    };
    QList<QScreen *> way = QGuiApplication::screens();
    driver.wizard.move(middleOf(way.first()));
    driver.show(RunMode::Install);
    const QPoint grip(300, 18);
    const auto send = [&](QEvent::Type type, const QPoint &window, Qt::MouseButton button,
                          Qt::MouseButtons buttons) {
        QMouseEvent event(type, grip, window + grip, button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(driver.titleBar, &event);
        QCoreApplication::processEvents();
    };
    QList<double> ratios;
    way.append(way.first());
    for (const QScreen *screen : way) {
        const QPoint from = driver.wizard.pos();
        const QPoint to = middleOf(screen);
        send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        for (const QPoint &place : { from + QPoint(2, 1), (from + to) / 2, to - QPoint(9, 5), to })
            send(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
        QCOMPARE(driver.wizard.screen(), screen);
        QCOMPARE(driver.wizard.devicePixelRatio(), screen->devicePixelRatio());
        ratios.append(screen->devicePixelRatio());
        QCOMPARE(driver.wizard.pos(), to);
        QCOMPARE(driver.wizard.size(), kWindowSize);
        QCOMPARE(driver.wizard.windowHandle()->size(), kWindowSize);
    }
    ratios.removeLast();
    QCOMPARE(ratios, QList<double>(std::begin(kScreenRatios), std::end(kScreenRatios)));
}

// A change of scale, a display that is unplugged, with or without the window on it, and all of them
// back again: the run goes on, and the window is as large as before and wholly painted.
void TestInstallerWizardScreens::screensChangeDuringARun()
{
    QFile file(u"screens.json"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonArray all = QJsonDocument::fromJson(file.readAll())[u"screens"_s].toArray();
    if (!setScreens(all))
        QSKIP("Here the screens cannot be changed");
    const auto restore = qScopeGuard([&all] { QVERIFY(setScreens(all)); });

    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    const QScreen *second = QGuiApplication::screens().at(1);
    driver.wizard.move(second->geometry().center() - driver.wizard.rect().center());
    QVERIFY(driver.startRun(RunMode::Install));
    QCOMPARE(driver.wizard.screen(), second);

    QJsonObject larger = all.at(1).toObject();
    larger[u"logicalDpi"_s] = 168;
    QJsonArray otherScale = all;
    otherScale[1] = larger;
    QJsonArray withoutPrimary = all;
    withoutPrimary.removeFirst();
    QJsonArray withoutBoth = withoutPrimary;
    withoutBoth.removeFirst();
    double fraction = 0.0;
    for (const QJsonArray &screens : { otherScale, all, withoutPrimary, all, withoutBoth, all }) {
        QVERIFY(setScreens(screens));
        QCoreApplication::processEvents();
        QCOMPARE(QGuiApplication::screens().size(), screens.size());
        const QScreen *screen = driver.wizard.screen();
        QVERIFY(QGuiApplication::screens().contains(screen));
        QVERIFY(driver.wizard.isVisible());
        QVERIFY(driver.wizard.windowHandle()->isVisible());
        // Windows gives the window its size at the new scale, and a place on a screen that is
        // left; off screen nobody does.
        driver.wizard.windowHandle()->resize(kWindowSize);
        QCoreApplication::processEvents();
        QCOMPARE(driver.wizard.size(), kWindowSize);
        QCOMPARE(driver.wizard.devicePixelRatio(), screen->devicePixelRatio());
        const QImage picture = driver.wizard.grab().toImage();
        QCOMPARE(picture.devicePixelRatio(), screen->devicePixelRatio());
        QCOMPARE(picture.size(), kWindowSize * screen->devicePixelRatio());
        QCOMPARE(holeIn(picture), QPoint(-1, -1));
        fraction += 0.1;
        Q_EMIT driver.engine.progress(fraction);
        QCOMPARE(driver.progress().percent->text(), QString::number(qRound(fraction * 100)) + u'%');
        QVERIFY(driver.engine.findChild<QProcess *>()->state() == QProcess::Running);
    }
    Q_EMIT driver.engine.finished(true, QString());
    QVERIFY(driver.comesTo("FinishedPage"));
}

QTEST_MAIN(TestInstallerWizardScreens)
#include "tst_installerwizard_screens.moc"
