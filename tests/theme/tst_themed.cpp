#include "pages/lightthemetest.h"
#include "theme/themed.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Qt also warns of a style sheet that it cannot parse.
class TestThemed : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void restylingRunsNowAndOnEveryChange();
    void styleSheetFollowsTheTheme();
    void baseStyleSheet();
};

void TestThemed::restylingRunsNowAndOnEveryChange()
{
    QStringList seen;
    {
        QObject context;
        onThemeChange(&context, [&seen] { seen << themed(u"@INS_TX"_s); });
        QCOMPARE(seen, QStringList({ u"#131923"_s }));
        ThemeManager::instance().setDarkMode(true);
        ThemeManager::instance().setDarkMode(false);
    }
    ThemeManager::instance().setDarkMode(true); // its context has been deleted
    QCOMPARE(seen, QStringList({ u"#131923"_s, u"#EDF1FA"_s, u"#131923"_s }));
}

void TestThemed::styleSheetFollowsTheTheme()
{
    QLabel label;
    setThemedStyleSheet(&label, u"color:@INS_TX3;"_s);
    for (const bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        label.ensurePolished();
        QCOMPARE(label.palette().color(QPalette::WindowText), themedColor(u"@INS_TX3"_s));
    }
    QCOMPARE(themedColor(u"@WN_LINE"_s), QColor(0xFF, 0xFF, 0xFF, 0x1C));
    QVERIFY(!themedColor(u"@NOWHERE"_s).isValid());
}

void TestThemed::baseStyleSheet()
{
    QFile file(u":/styles/base_theme.qss"_s);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString text = QString::fromUtf8(file.readAll());
    // Whole words: a longer one that begins with a token would be replaced too.
    static const QRegularExpression word(u"@\\w*"_s);
    const auto colour = [](QWidget &&widget) {
        widget.ensurePolished();
        return widget.palette().color(widget.foregroundRole()).name(QColor::HexRgb).toUpper();
    };
    const auto restore = qScopeGuard([] { qApp->setStyleSheet({}); });
    ThemeManager &manager = ThemeManager::instance();
    for (const auto theme : { ThemeManager::Light, ThemeManager::Dark }) {
        manager.setTheme(theme);
        for (const QRegularExpressionMatch &match : word.globalMatch(text))
            QVERIFY2(!manager.color(match.captured()).isEmpty(), qPrintable(match.captured()));
        QCOMPARE(colour(QLabel(u"label"_s)), manager.color(u"@TEXT"_s));
        QCOMPARE(colour(QLineEdit()), manager.color(u"@TEXT_INPUT"_s));
        QCOMPARE(colour(QPushButton(u"button"_s)), manager.color(u"@TEXT"_s));
    }
}

QTEST_MAIN(TestThemed)
#include "tst_themed.moc"
