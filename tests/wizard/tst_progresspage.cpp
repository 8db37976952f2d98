#include "app/applicationfonts.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/thememanager.h"
#include "widgets/gifbadge.h"
#include "wizard/progressparts.h"

#include <QLayout>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kSteps { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s };

} // namespace

class TestProgressPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout_data();
    void layout();
    void updatingBadge();
    void fonts_data() { pages(); }
    void fonts();
    void followsTheTheme_data() { pages(); }
    void followsTheTheme();
    void begin_data();
    void begin();
    void error_data();
    void error();
    void errorFollowsTheTheme();
    void newRunForgetsTheError();
    void fits_data() { pages(); }
    void fits();

private:
    static void pages();
};

void TestProgressPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestProgressPage::pages()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "install", "update", "uninstall" })
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestProgressPage::layout_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("head");
    QTest::addColumn<QString>("caption");
    QTest::newRow("install")
        << u"install"_s
        << QStringList { u"label: Installing"_s, u"gap 5"_s,
                         u"label: Roughly a minute. You can keep using your PC."_s }
        << u"This may take a few minutes."_s;
    QTest::newRow("update") << u"update"_s
                            << QStringList { u"row, spacing 14"_s,
                                             u"  GifBadge, top"_s,
                                             u"  column, spacing 0, top, stretch 1"_s,
                                             u"    label: Updating"_s,
                                             u"    gap 5"_s,
                                             u"    label: Roughly a minute. You can keep using "
                                             "your PC."_s }
                            << u"This may take a few minutes."_s;
    QTest::newRow("uninstall") << u"uninstall"_s
                               << QStringList { u"label: Uninstalling"_s, u"gap 5"_s,
                                                u"label: Removing Varnel Schematics from your "
                                                "computer."_s }
                               << u"Do not turn off your PC."_s;
}

void TestProgressPage::layout()
{
    QFETCH(QString, name);
    QFETCH(QStringList, head);
    QFETCH(QString, caption);
    const ProgressParts world(name);
    QStringList outline = layoutOutline(world.page.get());
    const qsizetype row = outline.indexOf(QRegularExpression(u"row, spacing .*"_s), head.size());
    QVERIFY(row > 0);
    outline.removeAt(row); // the gap between file and percentage is free
    const QStringList rest {
        u"gap 14"_s, u"StepList"_s,      u"stretch"_s, u"  label: , stretch 1"_s, u"  label: "_s,
        u"gap 8"_s,  u"ProgressTrack"_s, u"gap 8"_s,   u"label: "_s + caption,
    };
    QCOMPARE(outline, QStringList(u"margins 22 18 22 18, spacing 0"_s) + head + rest);
}

void TestProgressPage::updatingBadge()
{
    UpdatingPage page;
    page.resize(kPageSize);
    page.show();
    auto *badge = page.findChild<GifBadge *>();
    QCOMPARE(badge->geometry(), QRect(22, 18, 52, 52));
    GifBadge expected(u":/assets/business-development.gif"_s, 52);
    expected.resize(52, 52);
    const QImage picture = grabWidget(*badge);
    QVERIFY(pixelsUnlike(picture.copy(16, 16, 20, 20), Qt::white) > 0);
    QCOMPARE(picture, grabWidget(expected));
    const QLabel *title = labelOf(&page, u"Updating"_s);
    QCOMPARE(title->pos(), QPoint(22 + 52 + 14, 18));
    for (const char *other : { "install", "uninstall" })
        QVERIFY(!ProgressParts(QString::fromLatin1(other)).page->findChild<GifBadge *>());
}

void TestProgressPage::fonts()
{
    QFETCH(QString, name);
    const ProgressParts world(name);
    QCOMPARE(world.file->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(world.file->font().pixelSize(), 10);
    QCOMPARE(world.file->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(world.percent->font().family(), u"Space Grotesk"_s);
    QCOMPARE(int(world.percent->font().weight()), 600);
    QCOMPARE(world.percent->font().pixelSize(), 17);
    QCOMPARE(world.caption->font().pixelSize(), 11);
    QCOMPARE(world.track->height(), world.track->sizeHint().height());
    const QList<QLabel *> labels = world.page->findChildren<QLabel *>();
    int titles = 0;
    int bodies = 0;
    for (const QLabel *label : labels) {
        titles += label->font().pixelSize() == 18 ? 1 : 0;
        bodies += label->font().pixelSize() == 12 ? 1 : 0;
    }
    QCOMPARE(titles, 1);
    QCOMPARE(bodies, 1);
}

void TestProgressPage::followsTheTheme()
{
    QFETCH(QString, name);
    const ProgressParts world(name);
    for (bool dark : { false, true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(world.file->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
        QCOMPARE(world.caption->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
        QCOMPARE(world.percent->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX"_s }));
    }
}

void TestProgressPage::begin_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::newRow("install") << u"install"_s << u"This may take a few minutes."_s;
    QTest::newRow("update") << u"update"_s << u"This may take a few minutes."_s;
    QTest::newRow("uninstall") << u"uninstall"_s << u"Do not turn off your PC."_s;
}

// The second run of a page is prepared like the first.
void TestProgressPage::begin()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    const ProgressParts world(name);
    world.page->begin({ u"Old"_s });
    world.page->setWaiting(true);
    world.page->setProgress(0.7);
    world.page->setCurrentFile(u"old.dll"_s);
    world.page->setStatus(u"Old"_s);

    world.page->setWaiting(true);
    world.page->begin(kSteps);
    QStringList texts;
    for (const StepList::StepRow *row : world.steps->rows())
        texts.append(row->text());
    QCOMPARE(texts, kSteps);
    QCOMPARE(world.shownSteps(), 0);
    QCOMPARE(world.percent->text(), u"0%"_s);
    QVERIFY(world.file->text().isEmpty());
    QCOMPARE(world.caption->text(), caption);
    QCOMPARE(world.track->value(), 0.0);
    QCOMPARE(world.track->target(), 0.0);
    QVERIFY(!world.track->isIndeterminate());
}

void TestProgressPage::error_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    const QString detailed = u"Setup could not start the installation.  There is no room. "
                             "(log: /tmp/varnel_setup_last.log)"_s;
    for (const char *name : { "install", "update", "uninstall" }) {
        QTest::addRow("%s, usual", name) << QString::fromLatin1(name) << detailed;
        QTest::addRow("%s, markup", name) << QString::fromLatin1(name) << kLiteral;
        QTest::addRow("%s, very long", name)
            << QString::fromLatin1(name) << u"Something went wrong. "_s.repeated(100);
    }
}

void TestProgressPage::error()
{
    QFETCH(QString, name);
    QFETCH(QString, message);
    const ProgressParts world(name);
    world.page->begin(kSteps);
    world.page->setProgress(0.3);
    world.page->showError(message);
    QCOMPARE(world.caption->text(), message);
    QCOMPARE(world.caption->textFormat(), Qt::PlainText);
    QVERIFY(world.caption->wordWrap());
    QCOMPARE(world.caption->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_RED"_s }));
    QCOMPARE(world.percent->text(), u"30%"_s);
    QCOMPARE(world.shownSteps(), 2);
    QVERIFY(fitsWindow(world.page.get()));
}

void TestProgressPage::errorFollowsTheTheme()
{
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->showError(u"No"_s);
    for (bool dark : { true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(world.caption->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_RED"_s }));
        QVERIFY(world.caption->wordWrap());
    }
}

void TestProgressPage::newRunForgetsTheError()
{
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->showError(u"No"_s);
    world.page->begin(kSteps);
    QCOMPARE(world.caption->text(), u"This may take a few minutes."_s);
    QCOMPARE(world.caption->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
}

void TestProgressPage::fits()
{
    QFETCH(QString, name);
    const ProgressParts world(name);
    world.page->begin(kSteps + QStringList { u"Five"_s });
    world.page->setProgress(1.0);
    world.page->setCurrentFile(longWord());
    world.page->setStatus(longWord());
    QVERIFY(fitsWindow(world.page.get()));
}

QTEST_MAIN(TestProgressPage)
#include "tst_progresspage.moc"
