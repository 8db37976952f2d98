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
    void wordWiderThanTheBox();
    void longLineWidensNothing();
    void markupIsNotReadOut();
    void fitsAgainWhenWidened();
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
    QTest::addColumn<int>("words");
    QTest::addColumn<bool>("wrapped");
    QTest::newRow("one line") << 3 << true;
    QTest::newRow("two lines") << 10 << true;
    QTest::newRow("three lines") << 18 << false;
    QTest::newRow("ten lines") << 70 << false;
}

void TestSummaryBox::nothingFallsOut()
{
    QFETCH(int, words);
    QFETCH(bool, wrapped);
    SummaryBox box;
    box.resize(kWidth, box.height());
    const QString text = summaryOf(u"folder "_s.repeated(words));
    box.setSummary(text);
    box.show();
    QCOMPARE(box.text(), text);
    QCOMPARE(box.wordWrap(), wrapped);
    QCOMPARE(box.toolTip(), wrapped ? QString() : text);

    // However the path goes, the last line is there, and not cut.
    SummaryBox alone;
    alone.resize(kWidth, alone.height());
    alone.setSummary(u"(none)"_s);
    QCOMPARE(lastLine(box), lastLine(alone));
}

// It would be cut without a sign, and its line is no longer than any other.
void TestSummaryBox::wordWiderThanTheBox()
{
    SummaryBox box;
    box.resize(kWidth, box.height());
    const QString text = summaryOf(longWord());
    box.setSummary(text);
    box.show();
    QVERIFY(!box.wordWrap());
    QCOMPARE(box.toolTip(), text);
}

void TestSummaryBox::longLineWidensNothing()
{
    QWidget page;
    auto *layout = new QVBoxLayout(&page);
    auto *box = new SummaryBox(&page);
    layout->addWidget(box);
    const int before = page.minimumSizeHint().width();
    box->setSummary(summaryOf(u"folder "_s.repeated(70)));
    QCOMPARE(page.minimumSizeHint().width(), before);
}

void TestSummaryBox::markupIsNotReadOut()
{
    SummaryBox box;
    box.resize(kWidth, box.height());
    box.setSummary(summaryOf(u"folder "_s.repeated(70)));
    box.show();
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&box);
    QVERIFY(!box.toolTip().isEmpty());
    QCOMPARE(interface->text(QAccessible::Description), u"Summary"_s);
}

void TestSummaryBox::fitsAgainWhenWidened()
{
    SummaryBox box;
    box.resize(kWidth, box.height());
    box.setSummary(summaryOf(u"folder "_s.repeated(18)));
    box.show();
    QVERIFY(!box.wordWrap());
    box.resize(2 * kWidth, box.height());
    QVERIFY(box.wordWrap());
    box.setSummary(summaryOf(u"folder "_s.repeated(70)));
    QVERIFY(!box.wordWrap());
}

QTEST_MAIN(TestSummaryBox)
#include "tst_summarybox.moc"
