// The progress pages with texts of any length.

#include "app/applicationfonts.h"
#include "pages/strictwarnings.h"
#include "support/drawing.h"
#include "theme/thememanager.h"
#include "wizard/progressparts.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kSteps { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s };

} // namespace

class TestProgressPageTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void longFileMovesNothing_data() { pages(); }
    void longFileMovesNothing();
    void endlessFileKeepsItsEnds();
    void longStatusIsCutWithASign();
    void logIsNamedHoweverLongTheReasonIs_data();
    void logIsNamedHoweverLongTheReasonIs();
    void errorLeavesTheStepsTheirRoom_data() { pages(); }
    void errorLeavesTheStepsTheirRoom();

private:
    static void pages();
};

void TestProgressPageTexts::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestProgressPageTexts::pages()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "install", "update", "uninstall" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestProgressPageTexts::longFileMovesNothing()
{
    QFETCH(QString, name);
    const ProgressParts world(name);
    world.page->show();
    world.page->begin(kSteps);
    world.page->layout()->activate();
    const QRect percent = world.percent->geometry();
    const QRect track = world.track->geometry();
    const QRect caption = world.caption->geometry();
    const QRect steps = world.steps->geometry();
    const int fileBottom = world.file->geometry().bottom();
    QCOMPARE(percent.right(), kPageSize.width() - 22 - 1);
    for (const QString &path :
         { longWord(), QString(u"C:\\"_s + u"folder  with blanks\\"_s.repeated(12)) }) {
        world.page->setCurrentFile(path);
        world.page->layout()->activate();
        QCOMPARE(world.percent->geometry(), percent);
        QCOMPARE(world.track->geometry(), track);
        QCOMPARE(world.caption->geometry(), caption);
        QCOMPARE(world.steps->geometry(), steps);
        QCOMPARE(world.file->geometry().bottom(), fileBottom);
        QVERIFY(!world.file->geometry().intersects(steps));
        // All of it is seen, left of the percentage.
        QCOMPARE(shownLines(*world.file).join(QString()), path);
        QVERIFY(world.file->geometry().right() < percent.left() - 6);
    }
    world.page->setCurrentFile(u"short"_s);
    world.page->layout()->activate();
    QCOMPARE(world.file->geometry().bottom(), fileBottom);
    QCOMPARE(world.track->geometry(), track);
    QCOMPARE(world.page->size(), kPageSize);
}

void TestProgressPageTexts::endlessFileKeepsItsEnds()
{
    const ProgressParts world(u"install"_s);
    world.page->show();
    world.page->begin(kSteps);
    const QString path = u"C:\\"_s + longWord().repeated(3) + u"\\last.sch"_s;
    world.page->setCurrentFile(path);
    world.page->layout()->activate();
    const QString shown = shownLines(*world.file).join(QString());
    QVERIFY(shown.startsWith(u"C:\\mm"));
    QVERIFY(shown.endsWith(u"\\last.sch"));
    QCOMPARE(toolTipOf(*world.file), path);
    QVERIFY(!world.file->geometry().intersects(world.steps->geometry()));
}

void TestProgressPageTexts::longStatusIsCutWithASign()
{
    const ProgressParts world(u"install"_s);
    world.page->show();
    world.page->begin(kSteps);
    const QString status = u"Extracting "_s + longWord();
    world.page->setStatus(status);
    world.page->layout()->activate();
    const QStringList lines = shownLines(*world.caption);
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines[0].startsWith(u"Extracting mmm"_s));
    QVERIFY(lines[0].endsWith(u'…'));
    QCOMPARE(toolTipOf(*world.caption), status);
}

void TestProgressPageTexts::logIsNamedHoweverLongTheReasonIs_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("log");
    const QString log =
        uR"(C:\Users\firstname.lastname\AppData\Local\Temp\varnel_setup_last.log)"_s;
    const QString longLog = u"C:\\"_s + u"folder with blanks\\"_s.repeated(12) + u"last.log";
    QTest::newRow("short") << u"There is no room."_s << log;
    QTest::newRow("long") << u"Something went wrong. "_s.repeated(100) << log;
    QTest::newRow("one word") << longWord().repeated(5) << log;
    QTest::newRow("endless") << longWord().repeated(300) << log;
    QTest::newRow("markup") << QString(kLiteral + u' ').repeated(100) << log;
    QTest::newRow("long path") << u"Something went wrong. "_s.repeated(100) << longLog;
}

void TestProgressPageTexts::logIsNamedHoweverLongTheReasonIs()
{
    QFETCH(QString, reason);
    QFETCH(QString, log);
    const ProgressParts world(u"install"_s);
    world.page->show();
    world.page->begin(kSteps);
    const double captionBaseline = draw(*world.caption, 1.0).texts.first().baseline.y();
    const QString message = reason + u"  (log: "_s + log + u')';
    world.page->showError(message);
    world.page->layout()->activate();
    QCOMPARE(world.caption->text(), message);
    const QStringList lines = shownLines(*world.caption);
    const QString shown = lines.join(QString()).remove(u' ');
    QVERIFY2(shown.endsWith(QString(u"(log:"_s + log + u')').remove(u' ')), qPrintable(shown));
    QVERIFY2(shown.startsWith(reason.left(15).remove(u' ')), qPrintable(shown));
    for (const QString &line : lines)
        QVERIFY2(!line.endsWith(u"C:"), qPrintable(lines.join(u'|')));
    const QFontMetrics metrics(world.caption->font());
    QVERIFY(lines.size() * metrics.height() <= world.caption->height());
    // As near to the bar as any caption.
    const double baseline = draw(*world.caption, 1.0).texts.first().baseline.y();
    QVERIFY(std::abs(baseline - captionBaseline) < 1.0);

    const bool isWhole = shown == QString(message).remove(u' ');
    QCOMPARE(shown.count(u'…'), isWhole ? 0 : 1);
    QVERIFY2(isWhole || shown.contains(u"…(log:"), qPrintable(shown));
    QCOMPARE(toolTipOf(*world.caption), isWhole ? QString() : message);
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(world.caption);
    QCOMPARE(interface->text(QAccessible::Name), message);
    QCOMPARE(interface->text(QAccessible::Description), QString());

    QApplication::clipboard()->clear();
    QTest::mouseClick(world.caption, Qt::LeftButton);
    QTest::keySequence(world.caption, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), message);
}

void TestProgressPageTexts::errorLeavesTheStepsTheirRoom()
{
    QFETCH(QString, name);
    const ProgressParts world(name);
    world.page->begin(kSteps + QStringList { u"Five"_s });
    world.page->setCurrentFile(longWord().repeated(3));
    QVERIFY(fitsWindow(world.page.get()));
    const QRect steps = world.steps->geometry();
    world.page->showError(u"Something went wrong. "_s.repeated(100) + u"  (log: C:\\a.log)");
    QVERIFY(fitsWindow(world.page.get()));
    QCOMPARE(world.steps->geometry(), steps);
    QVERIFY(!world.file->geometry().intersects(steps));
    QVERIFY(shownLines(*world.caption).last().endsWith(u"(log: C:\\a.log)"));
}

QTEST_MAIN(TestProgressPageTexts)
#include "tst_progresspage_texts.moc"
