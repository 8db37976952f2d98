#include "app/applicationfonts.h"
#include "pages/fittedlabel.h"
#include "pages/pagelabels.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/fonts.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kSize(354, 34);
const QString kStyle =
    u"background:#ffffff;border:1px solid #808080;border-radius:8px;padding:0 11px;color:#ff0000;"_s;

QString longPath()
{
    return u"C:\\Users\\Somebody & <others>\\"_s + u"folder  of parts\\"_s.repeated(12)
        + u"Varnel"_s;
}

/// A label of one line in a frame.
struct FramedLabel : FittedLabel
{
    explicit FramedLabel(const QString &text) : FittedLabel(shortenMiddle)
    {
        setFont(monospacedFont(11));
        setText(text);
        setStyleSheet(kStyle);
        resize(kSize);
        show();
    }
};

} // namespace

class TestFittedLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init() { failOnWarnings(); }
    void shortTextLooksLikeAnyLabel();
    void longPathLosesItsMiddle();
    void textInMarkupIsShortened();
    void wrapsAtSeparators();
    void longWordGoesOnInTheNextLine();
    void shortensWhatHasNoLine();
    void askedWidthIsBounded();
    void toolTipHasItWhole_data();
    void toolTipHasItWhole();
    void toolTipStaysOnTheScreen();
    void textThatIsSeenNeedsNoToolTip();
    void assistiveTechnologyHasItWhole();
    void isCopiedWhole();
};

void TestFittedLabel::shortTextLooksLikeAnyLabel()
{
    FramedLabel label(u"C:\\Program Files\\Varnel"_s);
    QLabel plain(label.text());
    plain.setFont(label.font());
    plain.setStyleSheet(kStyle);
    plain.resize(kSize);
    plain.show();
    QCOMPARE(grabWidget(label, 2.0), grabWidget(plain, 2.0));
}

void TestFittedLabel::longPathLosesItsMiddle()
{
    FramedLabel label(longPath());
    QCOMPARE(label.text(), longPath());
    const QStringList lines = shownLines(label);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(u"C:\\Users\\Somebody"_s), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(u"\\Varnel"_s), qPrintable(lines[0]));
    QCOMPARE(lines[0].count(u'…'), 1);

    // What is left stands where a text of that length would, up to the frame's other side.
    FramedLabel cut(lines[0]);
    QCOMPARE(shownLines(cut), lines);
    const QPointF place = draw(label, 1.0).texts.first().baseline;
    const QPointF whole = draw(cut, 1.0).texts.first().baseline;
    QVERIFY2(std::abs(place.y() - whole.y()) < 0.1, qPrintable(QString::number(place.y())));
    QCOMPARE(place.x(), whole.x());
    QVERIFY(label.fontMetrics().horizontalAdvance(lines[0]) > kSize.width() - 2 * 12 - 3 - 10);
}

void TestFittedLabel::textInMarkupIsShortened()
{
    FramedLabel label({});
    label.setRichText(u"Installed <b>%1</b>"_s, longPath());
    QCOMPARE(shownText(&label).replace(u'\u00a0', u' '), u"Installed "_s + longPath());
    const QStringList lines = shownLines(label);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(u"Installed C:\\Users\\Some"_s), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(u"\\Varnel"_s), qPrintable(lines[0]));
    QVERIFY(lines[0].contains(u'…'));
}

// Above all not after the colon of the drive.
void TestFittedLabel::wrapsAtSeparators()
{
    FittedLabel label(shortenMiddle);
    label.setFont(monospacedFont(10));
    label.setWordWrap(true);
    const QString path = uR"(C:\Users\firstname.lastname\AppData\Local\Temp\setup.log)"_s;
    label.setText(u"Installed into the folder "_s + path);
    for (int width = 170; width <= 300; width += 5) {
        label.resize(width, label.heightForWidth(width));
        const QStringList lines = shownLines(label);
        QVERIFY(lines.size() > 1);
        QString joined;
        for (const QString &line : lines) {
            QVERIFY2(!line.endsWith(u"C:"), qPrintable(lines.join(u'|')));
            joined += line;
            if (!line.endsWith(u'\\') && joined.size() < label.text().size())
                joined += u' '; // the blank at which the line was broken is not drawn
        }
        QCOMPARE(joined, label.text());
    }
}

void TestFittedLabel::longWordGoesOnInTheNextLine()
{
    FittedLabel label(shortenMiddle);
    label.setFont(monospacedFont(10));
    label.setWordWrap(true);
    label.setText(longWord());
    const int lineHeight = label.fontMetrics().height();
    label.resize(300, label.heightForWidth(300));
    const QStringList lines = shownLines(label);
    QCOMPARE(lines.join(QString()), longWord());
    QVERIFY(lines.size() >= 4);
    QVERIFY(label.height() >= lines.size() * lineHeight);
    QVERIFY(label.height() < (lines.size() + 1) * lineHeight);
}

void TestFittedLabel::shortensWhatHasNoLine()
{
    FittedLabel label(shortenMiddle);
    label.setFont(monospacedFont(10));
    label.setWordWrap(true);
    label.setText(u"begin "_s + longWord() + u" end"_s);
    label.resize(300, 2 * label.fontMetrics().height() + 2);
    const QStringList lines = shownLines(label);
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[0].startsWith(u"begin "_s));
    QVERIFY(lines[1].endsWith(u" end"_s));
    QCOMPARE(lines.join(QString()).count(u'…'), 1);
}

void TestFittedLabel::askedWidthIsBounded()
{
    FramedLabel label(u"short"_s);
    QCOMPARE(label.minimumSizeHint(), label.sizeHint());
    label.setText(longWord());
    QCOMPARE(label.minimumSizeHint().width(), 200);
    QVERIFY(label.sizeHint().width() > 1000);
}

void TestFittedLabel::toolTipHasItWhole_data()
{
    QTest::addColumn<bool>("inMarkup");
    QTest::newRow("plain") << false;
    QTest::newRow("in markup") << true;
}

void TestFittedLabel::toolTipHasItWhole()
{
    QFETCH(bool, inMarkup);
    FramedLabel label(longPath());
    if (inMarkup)
        label.setRichText(u"Installed <b>%1</b>"_s, longPath());
    QCOMPARE(toolTipOf(label), longPath());
}

void TestFittedLabel::toolTipStaysOnTheScreen()
{
    QLabel tip(textToolTip(u"C:\\"_s + u"folderWithoutABlank\\"_s.repeated(12)));
    tip.setWordWrap(true);
    QVERIFY(tip.minimumSizeHint().width() < 300);
}

void TestFittedLabel::textThatIsSeenNeedsNoToolTip()
{
    FramedLabel label(u"C:\\Program Files\\Varnel"_s);
    QCOMPARE(toolTipOf(label), QString());
    FittedLabel wrapping(shortenMiddle);
    wrapping.setWordWrap(true);
    wrapping.setText(longPath());
    wrapping.resize(200, wrapping.heightForWidth(200));
    QCOMPARE(toolTipOf(wrapping), QString());
}

void TestFittedLabel::assistiveTechnologyHasItWhole()
{
    FramedLabel label(longPath());
    QVERIFY(!toolTipOf(label).isEmpty());
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&label);
    QCOMPARE(interface->text(QAccessible::Name), longPath());
    QCOMPARE(interface->text(QAccessible::Description), QString());
    label.setRichText(u"Installed <b>%1</b>"_s, longPath());
    QCOMPARE(interface->text(QAccessible::Name).replace(u'\u00a0', u' '),
             u"Installed "_s + longPath());
    QCOMPARE(interface->text(QAccessible::Description), QString());
}

void TestFittedLabel::isCopiedWhole()
{
    FramedLabel label(longPath());
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QImage before = grabWidget(label);
    QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(30, 17));
    QTest::mouseMove(&label, QPoint(60, 17));
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(60, 17));
    QVERIFY(grabWidget(label) != before); // it is seen that something is selected
    QApplication::clipboard()->clear();
    QTest::keySequence(&label, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), longPath());
}

QTEST_MAIN(TestFittedLabel)
#include "tst_fittedlabel.moc"
