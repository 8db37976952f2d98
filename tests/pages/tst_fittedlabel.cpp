#include "app/applicationfonts.h"
#include "pages/fittedlabel.h"
#include "pages/lightthemetest.h"
#include "pages/pagelabels.h"
#include "pages/pagetext.h"
#include "pages/summarybox.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/fonts.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QTest>

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

/// A label as high as its text needs to be.
struct WrappingLabel : FittedLabel
{
    WrappingLabel(const QString &text, int width) : FittedLabel(shortenMiddle)
    {
        setFont(monospacedFont(10));
        setWordWrap(true);
        setText(text);
        resize(width, heightForWidth(width));
    }
};

/// The summary of a page that names `path`.
struct Summary : SummaryBox
{
    explicit Summary(const QString &path)
    {
        resize(440, height());
        setRichText(u"Destination location:<br>%1<br><br>Additional tasks:<br>(none)"_s, path);
        show();
    }
};

QString nameOf(QWidget &widget)
{
    QString name = QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    return name.replace(QChar::Nbsp, u' ');
}

QString descriptionOf(QWidget &widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Description);
}

} // namespace

class TestFittedLabel : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void shortTextLooksLikeAnyLabel();
    void longPathLosesItsMiddle();
    void wrapsAtSeparators();
    void askedWidthIsBounded();
    void toolTipStaysOnTheScreen();
    void isCopiedWhole();
    void summaryKeepsItsLines_data();
    void summaryKeepsItsLines();
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
    QCOMPARE(toolTipOf(label), QString());
}

void TestFittedLabel::longPathLosesItsMiddle()
{
    FramedLabel label(longPath());
    QCOMPARE(label.text(), longPath());
    const QStringList lines = shownLines(label);
    QCOMPARE(lines.size(), 1);
    // What is left stands where a text of that length would, up to the frame's other side.
    FramedLabel cut(lines[0]);
    QCOMPARE(shownLines(cut), lines);
    const QPointF place = draw(label, 1.0).texts.first().baseline;
    const QPointF whole = draw(cut, 1.0).texts.first().baseline;
    QVERIFY(QLineF(place, whole).length() < 0.1);
    QVERIFY(label.fontMetrics().horizontalAdvance(lines[0]) > kSize.width() - 2 * 12 - 3 - 10);

    for (const QString &before : { QString(), u"Installed "_s }) {
        if (!before.isEmpty())
            label.setRichText(before + u"<b>%1</b>"_s, longPath());
        const QString line = shownLines(label).join(u'|');
        QVERIFY2(line.startsWith(before + u"C:\\Users\\Some"), qPrintable(line));
        QVERIFY2(line.endsWith(u"\\Varnel"_s), qPrintable(line));
        QCOMPARE(line.count(u'…'), 1);
        QCOMPARE(toolTipOf(label), longPath());
        QCOMPARE(nameOf(label), before + longPath());
        QCOMPARE(descriptionOf(label), QString()); // the tool tip is not read out
    }
}

// Above all not after the colon of the drive.
void TestFittedLabel::wrapsAtSeparators()
{
    const QString text =
        uR"(Installed into the folder C:\Users\firstname.lastname\AppData\Local\Temp\setup.log)"_s;
    for (int width = 170; width <= 300; width += 5) {
        WrappingLabel label(text, width);
        const QStringList lines = shownLines(label);
        QVERIFY(lines.size() > 1);
        QString joined;
        for (const QString &line : lines) {
            QVERIFY2(!line.endsWith(u"C:"), qPrintable(lines.join(u'|')));
            joined += line;
            if (!line.endsWith(u'\\') && joined.size() < text.size())
                joined += u' '; // the blank at which the line was broken is not drawn
        }
        QCOMPARE(joined, text);
        QCOMPARE(toolTipOf(label), QString());
    }
}

void TestFittedLabel::askedWidthIsBounded()
{
    FramedLabel label(u"short"_s);
    QCOMPARE(label.minimumSizeHint(), label.sizeHint());
    label.setText(longWord());
    QCOMPARE(label.minimumSizeHint().width(), 200);
    QVERIFY(label.sizeHint().width() > 1000);
}

void TestFittedLabel::toolTipStaysOnTheScreen()
{
    QLabel tip(textToolTip(u"C:\\"_s + u"folderWithoutABlank\\"_s.repeated(12)));
    tip.setWordWrap(true);
    QVERIFY(tip.minimumSizeHint().width() < 300);
}

void TestFittedLabel::isCopiedWhole()
{
    FramedLabel label(longPath());
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QImage before = grabWidget(label);
    QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(30, 17));
    QTest::mouseMove(&label, QPoint(60, 17));
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(60, 17));
    QVERIFY(grabWidget(label) != before); // the selection shows
    QApplication::clipboard()->clear();
    QTest::keySequence(&label, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text(), longPath());
}

void TestFittedLabel::summaryKeepsItsLines_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("lines"); // of the path
    QTest::addColumn<bool>("whole");
    QTest::newRow("one line") << uR"(C:\Program Files\Varnel)"_s << 1 << true;
    QTest::newRow("two lines") << uR"(C:\folder\)"_s.repeated(9) + u"last"_s << 2 << true;
    QTest::newRow("word of four lines") << longWord() << 2 << false;
}

void TestFittedLabel::summaryKeepsItsLines()
{
    QFETCH(QString, path);
    QFETCH(int, lines);
    QFETCH(bool, whole);
    Summary box(path);
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
    QCOMPARE(nameOf(box), u"Destination location:\n"_s + path + u"\n\nAdditional tasks:\n(none)");
    QCOMPARE(descriptionOf(box), u"Summary"_s);

    // A folder whose end is cut off at the edge would name another folder, which might exist.
    if (path.contains(u"folder\\"_s))
        QVERIFY2(shown.first().endsWith(u'\\'), qPrintable(shown.first()));
    const QImage picture = grabWidget(box, 2.0);
    const QRect edge(QPoint(box.width() - 13, 20) * 2, QSize(11, 90) * 2);
    QCOMPARE(pixelsUnlike(picture.copy(edge), colourAt(picture, { 4.0, 60.0 })), 0);
    const double last = draw(box, 1.0).texts.last().baseline.y();
    QVERIFY2(last + box.fontMetrics().descent() < box.height() - 2,
             qPrintable(QString::number(last)));
}

QTEST_MAIN(TestFittedLabel)
#include "tst_fittedlabel.moc"
