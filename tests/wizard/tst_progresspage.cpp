// The progress pages and their steps. Layouts, texts, fonts and colours are recorded by
// tst_pagestructure; how a row fades in is tst_revealrow's matter.

#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "widgets/look.h"
#include "widgets/progresstrack.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"
#include "wizard/updatingpage.h"
#include "wizard/wizardtest.h"

#include <QClipboard>
#include <QLayout>
#include <QPointer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kFour { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s };
const QStringList kFive = kFour + QStringList { u"Five"_s };

struct PageInAWindow
{
    QWidget window;
    UpdatingPage page;
};

/// A progress page with a run that has just begun, in no more room than the window has for it. This
/// one has the least, as its head has a badge.
struct Run : PageInAWindow, ProgressParts
{
    Run() : ProgressParts(&page)
    {
        window.resize(kPageSize);
        page.setParent(&window);
        page.setGeometry(window.rect());
        window.show();
        page.begin(kFour);
        layOut();
    }
    void layOut()
    {
        QCoreApplication::processEvents(); // which shows steps that were just added
        page.layout()->activate();
    }
};

QList<double> reveals(const StepList &list)
{
    QList<double> result;
    for (const StepList::StepRow *row : list.findChildren<StepList::StepRow *>())
        result << row->reveal();
    return result;
}

} // namespace

class TestProgressPage : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void stepsHaveThresholds();
    void stepsComeAndGo();
    void newStepsReplaceTheOld();
    void stepSlidesByFourPixels();
    void percentage();
    void barSweeps();
    void newRunForgetsTheOld();
    void textsAreLiteral();
    void longFileMovesNothing();
    void whatHasNoRoomIsLeftOut();
    void longErrorNamesItsLog();
    void errorLeavesTheStepsTheirRoom();
};

void TestProgressPage::stepsHaveThresholds()
{
    const auto shown = [](const QStringList &steps, double fraction) {
        StepList list;
        list.setProgress(fraction); // without any steps, this does nothing
        list.setSteps(steps);
        list.setProgress(fraction);
        return shownSteps(list);
    };
    QCOMPARE(shown(kFour, 0.2499), 1);
    QCOMPARE(shown(kFour, 0.25), 2);
    QCOMPARE(shown(kFour, 0.75), 4);
    QCOMPARE(shown(kFive, 0.7999), 4);
    QCOMPARE(shown(kFive, 0.8), 5);
    QCOMPARE(shown(kFour, qQNaN()), 0);
}

void TestProgressPage::stepsComeAndGo()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(1.0);
    clock.pass(300);
    list.setProgress(0.3);
    clock.pass(300);
    QCOMPARE(reveals(list), (QList<double> { 1.0, 1.0, 0.0, 0.0 }));
    list.complete();
    clock.pass(300);
    QCOMPARE(reveals(list), QList<double>(4, 1.0));

    list.setProgress(0.0);
    list.reset();
    clock.pass(300); // the animations have been stopped, not only set back
    QCOMPARE(reveals(list), QList<double>(4, 0.0));
}

void TestProgressPage::newStepsReplaceTheOld()
{
    StepList list;
    list.setSteps(kFour);
    list.setProgress(1.0);
    QList<QPointer<StepList::StepRow>> old;
    for (StepList::StepRow *row : list.findChildren<StepList::StepRow *>())
        old.append(row);
    list.setSteps(kFive);
    for (const QPointer<StepList::StepRow> &row : old)
        QTRY_VERIFY(!row);
    QStringList names;
    for (const auto *row : list.findChildren<StepList::StepRow *>())
        names << row->accessibleName();
    QCOMPARE(names, kFive);
    QCOMPARE(reveals(list), QList<double>(5, 0.0));
}

void TestProgressPage::stepSlidesByFourPixels()
{
    StepList::StepRow row(u"Creating shortcuts"_s, nullptr);
    row.resize(440, row.sizeHint().height());
    row.setReveal(1.0);
    const double top = inkRect(grabWidget(row, 4.0)).top();
    row.setReveal(0.75);
    QVERIFY(std::abs(inkRect(grabWidget(row, 4.0)).top() - top - 1.0) <= 0.3);
}

void TestProgressPage::percentage()
{
    Run run;
    const QList<QPair<double, QString>> rounded { { 0.004, u"0%"_s },
                                                  { 0.005, u"1%"_s },
                                                  { 0.125, u"13%"_s }, // not to even
                                                  { 0.994, u"99%"_s },
                                                  { 0.995, u"100%"_s } };
    for (const auto &[fraction, text] : rounded) {
        run.page.setProgress(fraction);
        QCOMPARE(run.percent->text(), text);
    }
}

// As long as there is no figure.
void TestProgressPage::barSweeps()
{
    Run run;
    QVERIFY(!run.barSweeps());
    run.page.setWaiting(true);
    run.page.setStatus(u"Unpacking"_s);
    run.page.setCurrentFile(u"a.dll"_s);
    QVERIFY(run.barSweeps());
    run.page.setProgress(0.01);
    QVERIFY(!run.barSweeps());
    run.page.setWaiting(true);
    run.page.showError(u"No"_s);
    QVERIFY(!run.barSweeps());
    run.page.setWaiting(true);
    run.page.resetBar();
    QVERIFY(!run.barSweeps());
}

void TestProgressPage::newRunForgetsTheOld()
{
    Run fresh;
    const QRect belowTheHead(0, fresh.steps->y(), kPageSize.width(), kPageSize.height());
    const QImage expected = grabWidget(fresh.page).copy(belowTheHead);
    Run run;
    run.page.setWaiting(true);
    run.page.setProgress(0.7);
    run.page.setCurrentFile(longWord());
    run.page.showError(u"It failed. "_s.repeated(50));
    run.layOut();
    run.page.begin(kFour);
    run.layOut();
    QCOMPARE(run.stepTexts(), kFour);
    QVERIFY(grabWidget(run.page).copy(belowTheHead) == expected);
}

void TestProgressPage::textsAreLiteral()
{
    Run run;
    run.page.setStatus(kLiteral);
    run.page.setProgress(0.4);
    run.page.setCurrentFile(kLiteral);
    run.layOut();
    QCOMPARE(shownLines(*run.file), QStringList { kLiteral });
    QCOMPARE(shownLines(*run.caption), QStringList { kLiteral });
    run.page.showError(kLiteral);
    QCOMPARE(shownLines(*run.caption), QStringList { kLiteral });
}

void TestProgressPage::longFileMovesNothing()
{
    Run run;
    const QList<const QWidget *> others { run.percent, run.track, run.caption, run.steps };
    QList<QRect> places;
    for (const QWidget *other : others)
        places << other->geometry();
    const int bottom = run.file->geometry().bottom();
    for (const QString &path :
         { longWord(), QString(u"C:\\"_s + u"folder  with blanks\\"_s.repeated(12)), u"short"_s }) {
        run.page.setCurrentFile(path);
        run.layOut();
        for (qsizetype i = 0; i < others.size(); ++i)
            QCOMPARE(others[i]->geometry(), places[i]);
        QCOMPARE(run.file->geometry().bottom(), bottom);
        QVERIFY(!run.file->geometry().intersects(run.steps->geometry()));
        // All of it is seen, left of the percentage.
        QCOMPARE(shownLines(*run.file).join(QString()), path);
        QVERIFY(run.file->geometry().right() < run.percent->x() - 6);
    }
    QCOMPARE(run.page.size(), kPageSize);
}

void TestProgressPage::whatHasNoRoomIsLeftOut()
{
    Run run;
    const QString path = u"C:\\"_s + longWord().repeated(3) + u"\\last.sch"_s;
    const QString status = u"Extracting "_s + longWord();
    run.page.setCurrentFile(path);
    run.page.setStatus(status);
    run.layOut();
    const QString file = shownLines(*run.file).join(QString());
    QVERIFY(file.startsWith(u"C:\\mm") && file.endsWith(u"\\last.sch"));
    QVERIFY(!run.file->geometry().intersects(run.steps->geometry()));
    const QStringList lines = shownLines(*run.caption);
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines[0].startsWith(u"Extracting mmm"_s) && lines[0].endsWith(u'…'));
    QCOMPARE(toolTipOf(*run.file), path);
    QCOMPARE(toolTipOf(*run.caption), status);
}

void TestProgressPage::longErrorNamesItsLog()
{
    Run run;
    const double baseline = draw(*run.caption, 1.0).texts.first().baseline.y();
    const QString log = uR"((log: C:\Users\firstname.lastname\Temp\varnel_setup_last.log))"_s;
    const QString message = u"Something went wrong. "_s.repeated(100) + u"  "_s + log;
    run.page.showError(message);
    run.layOut();
    const QStringList lines = shownLines(*run.caption);
    QVERIFY(lines.first().startsWith(u"Something went wrong. Something"_s));
    const QString shown = lines.join(QString()).remove(u' ');
    QVERIFY2(shown.endsWith(u"…"_s + QString(log).remove(u' ')), qPrintable(shown));
    QVERIFY(lines.size() * run.caption->fontMetrics().height() <= run.caption->height());
    // As near to the bar as any caption.
    QVERIFY(std::abs(draw(*run.caption, 1.0).texts.first().baseline.y() - baseline) < 1.0);
    QCOMPARE(toolTipOf(*run.caption), message);

    // It can be copied, for those who are asked for help.
    QApplication::clipboard()->clear();
    QTest::mouseClick(run.caption, Qt::LeftButton);
    QTest::keySequence(run.caption, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), message);
}

void TestProgressPage::errorLeavesTheStepsTheirRoom()
{
    Run run;
    run.page.begin(kFive);
    run.page.setProgress(1.0);
    run.page.setCurrentFile(longWord().repeated(3));
    run.page.setStatus(longWord());
    run.layOut();
    QVERIFY(fitsWindow(&run.page));
    const QRect steps = run.steps->geometry();
    QVERIFY(steps.height() >= run.steps->sizeHint().height());
    run.page.showError(u"Something went wrong. "_s.repeated(100) + u"  (log: C:\\a.log)");
    run.layOut();
    QVERIFY(fitsWindow(&run.page));
    QCOMPARE(run.steps->geometry(), steps);
    QVERIFY(!run.file->geometry().intersects(steps));
    QVERIFY(shownLines(*run.caption).last().endsWith(u"(log: C:\\a.log)"));
}

QTEST_MAIN(TestProgressPage)
#include "tst_progresspage.moc"
