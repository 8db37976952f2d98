#include "theme/themed.h"

#include <QEvent>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

class PaintCounter : public QWidget
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
};

} // namespace

class TestThemed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void text();
    void colour_data();
    void colour();
    void restyleRunsNowAndOnEveryChange();
    void restyleEndsWithItsContext();
    void styleSheetFollowsTheTheme();
    void styleSheetReplacesTheWidgetsOwn();
    void widgetIsRepainted();
};

void TestThemed::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    ThemeManager::instance().setDarkMode(false);
}

void TestThemed::text()
{
    QCOMPARE(themed(u"color:@INS_TX2;"_s), u"color:#586371;"_s);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(themed(u"color:@INS_TX2;"_s), u"color:#9DAAC6;"_s);
    QCOMPARE(themed(u"color:@NOWHERE;"_s), u"color:@NOWHERE;"_s);
}

void TestThemed::colour_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QColor>("light");
    QTest::addColumn<QColor>("dark");
    QTest::newRow("opaque") << u"@INS_TX"_s << QColor(0x13, 0x19, 0x23) << QColor(0xED, 0xF1, 0xFA);
    QTest::newRow("translucent") << u"@WN_LINE"_s << QColor(0x14, 0x19, 0x23, 0x1A)
                                 << QColor(0xFF, 0xFF, 0xFF, 0x1C);
    QTest::newRow("unknown") << u"@NOWHERE"_s << QColor() << QColor();
}

void TestThemed::colour()
{
    QFETCH(const QString, token);
    QFETCH(const QColor, light);
    QFETCH(const QColor, dark);
    QCOMPARE(themedColor(token), light);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(themedColor(token), dark);
}

void TestThemed::restyleRunsNowAndOnEveryChange()
{
    QObject context;
    QStringList seen;
    onThemeChange(&context, [&seen] { seen << themed(u"@INS_TX"_s); });
    QCOMPARE(seen, QStringList({ u"#131923"_s }));
    ThemeManager::instance().setDarkMode(true);
    ThemeManager::instance().setDarkMode(false);
    QCOMPARE(seen, QStringList({ u"#131923"_s, u"#EDF1FA"_s, u"#131923"_s }));
}

void TestThemed::restyleEndsWithItsContext()
{
    int runs = 0;
    {
        QObject context;
        onThemeChange(&context, [&runs] { ++runs; });
    }
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(runs, 1);
}

void TestThemed::styleSheetFollowsTheTheme()
{
    QLabel label;
    setThemedStyleSheet(&label, u"color:@INS_TX3;"_s);
    QCOMPARE(label.styleSheet(), u"color:#8A94A2;"_s);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(label.styleSheet(), u"color:#6B7890;"_s);
    ThemeManager::instance().setDarkMode(false);
    QCOMPARE(label.styleSheet(), u"color:#8A94A2;"_s);
}

void TestThemed::styleSheetReplacesTheWidgetsOwn()
{
    QLabel label;
    label.setStyleSheet(u"margin:1px;"_s);
    setThemedStyleSheet(&label, u"color:@INS_TX;"_s);
    QCOMPARE(label.styleSheet(), u"color:#131923;"_s);
}

void TestThemed::widgetIsRepainted()
{
    PaintCounter widget;
    repaintOnThemeChange(&widget);
    widget.resize(20, 20);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QTRY_VERIFY_WITH_TIMEOUT(widget.paints > 0, 10000);
    QCoreApplication::processEvents();
    const int before = widget.paints;
    ThemeManager::instance().setDarkMode(true);
    QTRY_COMPARE_WITH_TIMEOUT(widget.paints, before + 1, 10000);
}

QTEST_MAIN(TestThemed)
#include "tst_themed.moc"
