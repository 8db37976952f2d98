#include "app/applicationfonts.h"
#include "pages/pagetext.h"
#include "pages/pathlabel.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"

#include <QTest>
#include <QTextDocument>

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

QImage pictureOf(QLabel &label)
{
    label.setStyleSheet(kStyle);
    label.resize(kSize);
    label.show();
    return grabWidget(label, 2.0);
}

} // namespace

class TestPathLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init() { failOnWarnings(); }
    void shortPathLooksLikeAnyLabel();
    void longPathLosesItsMiddle();
    void toolTipHasItWhole();
    void toolTipStaysOnTheScreen();
};

void TestPathLabel::shortPathLooksLikeAnyLabel()
{
    PathLabel label;
    label.setPath(u"C:\\Program Files\\Varnel"_s);
    QLabel plain(label.text());
    plain.setFont(label.font());
    QCOMPARE(pictureOf(label), pictureOf(plain));
}

void TestPathLabel::longPathLosesItsMiddle()
{
    PathLabel label;
    label.setPath(longPath());
    const QImage picture = pictureOf(label);
    QCOMPARE(label.text(), longPath());

    PathLabel cut;
    cut.setPath(label.fontMetrics().elidedText(longPath(), Qt::ElideMiddle,
                                               label.contentsRect().width() - 3));
    QVERIFY(cut.text().startsWith(u"C:\\Users"));
    QVERIFY(cut.text().endsWith(u"Varnel"));
    QCOMPARE(picture, pictureOf(cut));
}

void TestPathLabel::toolTipHasItWhole()
{
    PathLabel label;
    label.setPath(longPath());
    QTextDocument tip;
    tip.setHtml(label.toolTip());
    QCOMPARE(tip.toPlainText().remove(u'\u200b').replace(u'\u00a0', u' '), longPath());
}

void TestPathLabel::toolTipStaysOnTheScreen()
{
    PathLabel label;
    label.setPath(u"C:\\"_s + u"folderWithoutABlank\\"_s.repeated(12));
    QLabel tip(label.toolTip());
    tip.setWordWrap(true);
    QVERIFY(tip.minimumSizeHint().width() < 300);
}

QTEST_MAIN(TestPathLabel)
#include "tst_pathlabel.moc"
