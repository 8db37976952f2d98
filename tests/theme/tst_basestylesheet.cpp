#include "theme/thememanager.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestBaseStyleSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyNameIsAToken_data();
    void everyNameIsAToken();
    void widgetsTakeItsColours_data();
    void widgetsTakeItsColours();
};

void TestBaseStyleSheet::init()
{
    // Qt warns of a style sheet that it cannot parse.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestBaseStyleSheet::everyNameIsAToken_data()
{
    QTest::addColumn<ThemeManager::Theme>("theme");
    QTest::newRow("light") << ThemeManager::Light;
    QTest::newRow("dark") << ThemeManager::Dark;
}

void TestBaseStyleSheet::everyNameIsAToken()
{
    QFETCH(const ThemeManager::Theme, theme);
    QFile file(u":/styles/base_theme.qss"_s);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString source = QString::fromUtf8(file.readAll());
    // A name, as whole as it is written, and not just something that begins like one.
    static const QRegularExpression name(u"@\\w*"_s);
    int names = 0;
    ThemeManager::instance().setTheme(theme);
    for (const QRegularExpressionMatch &match : name.globalMatch(source)) {
        QVERIFY2(!ThemeManager::instance().color(match.captured()).isEmpty(),
                 qPrintable(match.captured()));
        ++names;
    }
    QVERIFY(names > 0);
    QCOMPARE(qApp->styleSheet(), ThemeManager::instance().resolve(source));
    QVERIFY(!qApp->styleSheet().contains(u'@'));
}

void TestBaseStyleSheet::widgetsTakeItsColours_data()
{
    everyNameIsAToken_data();
}

void TestBaseStyleSheet::widgetsTakeItsColours()
{
    QFETCH(const ThemeManager::Theme, theme);
    ThemeManager::instance().setTheme(theme);
    QLabel label(u"label"_s);
    QLineEdit edit;
    QPushButton button(u"button"_s);
    const auto colour = [](QWidget &widget) {
        widget.ensurePolished();
        return widget.palette().color(widget.foregroundRole()).name(QColor::HexRgb).toUpper();
    };
    QCOMPARE(colour(label), ThemeManager::instance().color(u"@TEXT"_s));
    QCOMPARE(colour(edit), ThemeManager::instance().color(u"@TEXT_INPUT"_s));
    QCOMPARE(colour(button), ThemeManager::instance().color(u"@TEXT"_s));
}

QTEST_MAIN(TestBaseStyleSheet)
#include "tst_basestylesheet.moc"
