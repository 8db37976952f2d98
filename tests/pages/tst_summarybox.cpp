#include "app/applicationfonts.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/summarybox.h"
#include "support/grab.h"
#include "theme/thememanager.h"

#include <QAccessible>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 440; // px, that of a page's content

QString summaryOf(const QString &path)
{
    return u"Destination location:<br>%1<br><br>Additional tasks:<br>(none)"_s.arg(path);
}

/// Picture of the lowest line of text, without the air around it.
QImage lastLine(SummaryBox &box)
{
    const QImage picture = grabWidget(box);
    const QColor ground = picture.pixelColor(4, box.height() / 2);
    const auto hasInk = [&](int y) {
        for (int x = 14; x < 60; ++x) {
            if (picture.pixelColor(x, y) != ground)
                return true;
        }
        return false;
    };
    int bottom = box.height() - 3;
    while (bottom > 0 && !hasInk(bottom))
        --bottom;
    int top = bottom;
    while (top > 0 && hasInk(top - 1))
        --top;
    return picture.copy(14, top, 60, bottom - top + 1);
}

} // namespace

class TestSummaryBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void looks();
    void followsTheTheme();
    void nothingFallsOut_data();
    void nothingFallsOut();
    void folderIsNeverMistaken();
    void longLineWidensNothing();
    void isReadOutWhole();
};

void TestSummaryBox::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestSummaryBox::looks()
{
    const SummaryBox box;
    QCOMPARE(box.textFormat(), Qt::RichText);
    QCOMPARE(box.alignment(), Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(box.minimumHeight(), 120);
    QCOMPARE(box.maximumHeight(), 120);
    QCOMPARE(box.font().family(), u"JetBrains Mono"_s);
    QCOMPARE(box.font().pixelSize(), 11);
}

void TestSummaryBox::followsTheTheme()
{
    const SummaryBox box;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(box.styleSheet(),
                 coloured(u"background:%1;border:1px solid %2;border-radius:8px;"
                          "padding:12px 13px;color:%3;"_s,
                          { u"@INS_PANEL"_s, u"@INS_LINE"_s, u"@INS_TX2"_s }));
    }
}

void TestSummaryBox::nothingFallsOut_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("lines"); // of the path
    QTest::addColumn<bool>("whole");
    QTest::newRow("one line") << uR"(C:\Program Files\Varnel)"_s << 1 << true;
    QTest::newRow("two lines") << uR"(C:\folder\)"_s.repeated(9) + u"last"_s << 2 << true;
    QTest::newRow("three lines") << uR"(C:\folder\)"_s.repeated(14) + u"last"_s << 2 << false;
    QTest::newRow("ten lines") << uR"(C:\folder\)"_s.repeated(50) + u"last"_s << 2 << false;
    QTest::newRow("word of two lines") << QString(100, u'm') << 2 << true;
    QTest::newRow("word of four lines") << longWord() << 2 << false;
    QTest::newRow("blanks") << u"one  two   "_s.repeated(5) << 1 << true;
}

void TestSummaryBox::nothingFallsOut()
{
    QFETCH(QString, path);
    QFETCH(int, lines);
    QFETCH(bool, whole);
    SummaryBox box;
    box.resize(kWidth, box.height());
    box.setRichText(summaryOf(u"%1"_s), path);
    box.show();

    QStringList shown = shownLines(box);
    QCOMPARE(shown.takeFirst(), u"Destination location:"_s);
    QCOMPARE(shown.takeLast(), u"(none)"_s);
    QCOMPARE(shown.takeLast(), u"Additional tasks:"_s);
    QCOMPARE(shown.size(), lines);
    QCOMPARE(shown.join(QString()) == path, whole);
    QCOMPARE(shown.join(QString()).count(u'…'), whole ? 0 : 1);
    QCOMPARE(shown.first().left(3), path.left(3));
    QCOMPARE(shown.last().right(4), path.right(4));
    QCOMPARE(toolTipOf(box), whole ? QString() : path);

    // However the path goes, the last line is there, and not cut.
    SummaryBox alone;
    alone.resize(kWidth, alone.height());
    alone.setText(u"(none)"_s);
    QCOMPARE(lastLine(box), lastLine(alone));
}

// Its end, cut at the edge, would name another folder that might be there.
void TestSummaryBox::folderIsNeverMistaken()
{
    const QString path =
        uR"(C:\Users\firstname.lastname\AppData\Local\Programs\Engineering\VarnelSchematics-x64)"_s;
    SummaryBox box;
    box.resize(kWidth, box.height());
    box.setRichText(summaryOf(u"%1"_s), path);
    box.show();
    const QStringList lines = shownLines(box);
    QCOMPARE(lines[1] + lines[2], path);
    QVERIFY2(lines[1].endsWith(u'\\'), qPrintable(lines[1]));
    for (double ratio : { 1.0, 2.0 }) {
        // Both lines end before the frame does.
        const QImage picture = grabWidget(box, ratio);
        const QColor ground = colourAt(picture, { 4.0, 60.0 });
        const QRect edge(QPoint(kWidth - 13, 20) * ratio, QSize(11, 90) * ratio);
        QCOMPARE(pixelsUnlike(picture.copy(edge), ground), 0);
    }
}

void TestSummaryBox::longLineWidensNothing()
{
    QWidget page;
    auto *layout = new QVBoxLayout(&page);
    auto *box = new SummaryBox(&page);
    layout->addWidget(box);
    const int before = page.minimumSizeHint().width();
    box->setRichText(summaryOf(u"%1"_s), longWord());
    QVERIFY(page.minimumSizeHint().width() < kWidth);
    QVERIFY(before < kWidth);
}

void TestSummaryBox::isReadOutWhole()
{
    SummaryBox box;
    box.resize(kWidth, box.height());
    box.setRichText(summaryOf(u"%1"_s), longWord());
    box.show();
    QVERIFY(!toolTipOf(box).isEmpty());
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&box);
    QCOMPARE(interface->text(QAccessible::Name),
             u"Destination location:\n"_s + longWord() + u"\n\nAdditional tasks:\n(none)");
    QCOMPARE(interface->text(QAccessible::Description), u"Summary"_s);
}

QTEST_MAIN(TestSummaryBox)
#include "tst_summarybox.moc"
