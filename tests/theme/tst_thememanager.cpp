#include "theme/thememanager.h"
#include "theme/tokens.h"

#include <QApplication>
#include <QMetaMethod>
#include <QPalette>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <thread>
#include <type_traits>

using namespace Qt::Literals::StringLiterals;

namespace {

// What the style sheet of this program (stylesheet.qss) becomes.
const QString kLightSheet =
    u"/* A stand-in for the base style sheet — with @NOWHERE and #1319234, names that the table "
    u"lacks. */\n"
    u"QLabel { color: #586371; background: #131923; border-color: #8A94A2; }\n"
    u"QLineEdit { color: #111827; selection-color: #6B7280; background: #3B5CD8; }\n"_s;
const QString kDarkSheet =
    u"/* A stand-in for the base style sheet — with @NOWHERE and #EDF1FA4, names that the table "
    u"lacks. */\n"
    u"QLabel { color: #9DAAC6; background: #EDF1FA; border-color: #6B7890; }\n"
    u"QLineEdit { color: #F3F4F6; selection-color: #9CA3AF; background: #4D74F8; }\n"_s;

const QString kOtherSheet = u"QLabel { margin: 1px; }"_s;

ThemeManager &manager()
{
    return ThemeManager::instance();
}

/// A palette that no theme gives, solid in one colour.
QPalette oddPalette()
{
    QPalette palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        palette.setBrush(QPalette::ColorRole(role), QColor(0xAB, 0x12, 0xCD));
    return palette;
}

} // namespace

// There is one manager, made by the first that asks and by nobody else.
static_assert(!std::is_default_constructible_v<ThemeManager>);
static_assert(!std::is_copy_constructible_v<ThemeManager>);
static_assert(std::is_base_of_v<QObject, ThemeManager>);
static_assert(ThemeManager::Light == 0 && ThemeManager::Dark == 1);

class TestThemeManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void instanceIsOneObject();
    void signalsComeInOrder();
    void colors_data();
    void colors();
    void unknownTokenHasNoColor_data();
    void unknownTokenHasNoColor();
    void resolve_data();
    void resolve();
    void setThemeStylesTheApplication();
    void themeOutOfRangeIsDarkInLightShades();
    void setDarkModeStylesNothing();
    void everySwitchIsAnnounced();
    void setPrimaryColor_data();
    void setPrimaryColor();
    void primaryColorIsLostAtTheNextSwitch();
    void signalsFollowTheChange();
    void missingSheetChangesNothing();
};

void TestThemeManager::initTestCase()
{
    // The first use of the manager; it must leave the application alone.
    QApplication::setPalette(oddPalette());
    qApp->setStyleSheet(kOtherSheet);
    QCOMPARE(manager().theme(), ThemeManager::Light);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#131923"_s);
    QCOMPARE(qApp->styleSheet(), kOtherSheet);
    QCOMPARE(QApplication::palette(), oddPalette());
}

void TestThemeManager::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    manager().setDarkMode(false);
    qApp->setStyleSheet(kOtherSheet);
    QApplication::setPalette(oddPalette());
}

void TestThemeManager::instanceIsOneObject()
{
    QCOMPARE(&ThemeManager::instance(), &ThemeManager::instance());
    const ThemeManager *elsewhere = nullptr;
    std::thread([&elsewhere] { elsewhere = &ThemeManager::instance(); }).join();
    QCOMPARE(elsewhere, &ThemeManager::instance());
    QVERIFY(!manager().parent());
}

void TestThemeManager::signalsComeInOrder()
{
    const QMetaObject &meta = ThemeManager::staticMetaObject;
    const QMetaMethod first = meta.method(meta.methodOffset());
    QCOMPARE(first.methodType(), QMetaMethod::Signal);
    QCOMPARE(first.methodSignature(), "themeChanged(ThemeManager::Theme)");
    const QMetaMethod second = meta.method(meta.methodOffset() + 1);
    QCOMPARE(second.methodType(), QMetaMethod::Signal);
    QCOMPARE(second.methodSignature(), "primaryColorChanged(QString)");
}

void TestThemeManager::colors_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QString>("dark");
    for (const ThemeToken &token : themeTokens())
        QTest::newRow(token.name.data()) << QString(token.light) << QString(token.dark);
}

void TestThemeManager::colors()
{
    QFETCH(const QString, light);
    QFETCH(const QString, dark);
    const QString token = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(manager().color(token), light);
    QCOMPARE(manager().resolve(u"a: " + token + u";b"), QString(u"a: " + light + u";b"));
    manager().setDarkMode(true);
    QCOMPARE(manager().color(token), dark);
    QCOMPARE(manager().resolve(u"a: " + token + u";b"), QString(u"a: " + dark + u";b"));
}

void TestThemeManager::unknownTokenHasNoColor_data()
{
    QTest::addColumn<QString>("token");
    QTest::newRow("empty") << QString();
    QTest::newRow("no such name") << u"@NOWHERE"_s;
    QTest::newRow("without its sign") << u"INS_TX"_s;
    QTest::newRow("sign alone") << u"@"_s;
    QTest::newRow("lower case") << u"@ins_tx"_s;
    QTest::newRow("mixed case") << u"@Ins_Tx"_s;
    QTest::newRow("front of a name") << u"@INS_T"_s;
    QTest::newRow("longer than a name") << u"@INS_TX4"_s;
    QTest::newRow("blank after") << u"@INS_TX "_s;
    QTest::newRow("a colour") << u"#131923"_s;
}

void TestThemeManager::unknownTokenHasNoColor()
{
    QFETCH(const QString, token);
    QCOMPARE(manager().color(token), QString());
    manager().setDarkMode(true);
    QCOMPARE(manager().color(token), QString());
}

void TestThemeManager::resolve_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("resolved");
    const auto row = [](const char *name, const QString &text, const QString &resolved) {
        QTest::newRow(name) << text << resolved;
    };
    row("empty", u""_s, u""_s);
    row("no token", u"color: #FFFFFF; margin: %1px"_s, u"color: #FFFFFF; margin: %1px"_s);
    row("token alone", u"@INS_TX"_s, u"#131923"_s);
    row("longer name", u"@INS_TX2"_s, u"#586371"_s);
    row("long after short", u"@INS_TX @INS_TX2 @INS_TX3"_s, u"#131923 #586371 #8A94A2"_s);
    row("short after long", u"@INS_TX3 @INS_TX2 @INS_TX"_s, u"#8A94A2 #586371 #131923"_s);
    row("names in names", u"@PRIMARY_DARK @PRIMARY @PRIMARY_HOVER"_s, u"#243B94 #3B5CD8 #2A43A6"_s);
    row("text names", u"@TEXT_SECONDARY,@TEXT,@TEXT_INPUT"_s, u"#6B7280,#111827,#374151"_s);
    row("longest name", u"@SCROLLBAR_HANDLE_HOVER @SCROLLBAR_HANDLE"_s, u"#AEB6BF #C7CDD4"_s);
    row("every occurrence", u"@INS_BG;@INS_BG;@INS_BG"_s, u"#FFFFFF;#FFFFFF;#FFFFFF"_s);
    row("side by side", u"@INS_TX@INS_TX2@INS_TX"_s, u"#131923#586371#131923"_s);
    row("translucent", u"border: 1px solid @WN_LINE;"_s, u"border: 1px solid #1A141923;"_s);
    row("inside a word", u"mail@INS_BG"_s, u"mail#FFFFFF"_s);
    row("unknown", u"@NOWHERE { color: @NOT_HERE }"_s, u"@NOWHERE { color: @NOT_HERE }"_s);
    row("unknown beside known", u"@NOWHERE@INS_BG@NOWHERE"_s, u"@NOWHERE#FFFFFF@NOWHERE"_s);
    row("unknown front of a name", u"@INS_T @INS_ @INS"_s, u"@INS_T @INS_ @INS"_s);
    row("lower case", u"@ins_tx @Ins_Tx"_s, u"@ins_tx @Ins_Tx"_s);
    row("sign alone", u"@ @@ a@"_s, u"@ @@ a@"_s);
    row("two signs", u"@@INS_BG"_s, u"@#FFFFFF"_s);
    row("blank after the sign", u"@ INS_BG"_s, u"@ INS_BG"_s);
    row("letters after", u"@INS_TXfoo"_s, u"#131923foo"_s);
    row("capitals after", u"@INS_TXT"_s, u"#131923T"_s);
    row("digit after", u"@INS_TX4"_s, u"#1319234"_s);
    row("digit after a longer name", u"@INS_TX22"_s, u"#5863712"_s);
    row("line after", u"@TEXT_"_s, u"#111827_"_s);
    row("front of a longer name after", u"@TEXT_SECONDAR"_s, u"#111827_SECONDAR"_s);
    row("longest that fits", u"@PRIMARY_HOVERED"_s, u"#2A43A6ED"_s);
    row("letter of another script after", u"@INS_TXé€"_s, u"#131923é€"_s);
}

void TestThemeManager::resolve()
{
    QFETCH(const QString, text);
    QFETCH(const QString, resolved);
    QCOMPARE(manager().resolve(text), resolved);
}

void TestThemeManager::setThemeStylesTheApplication()
{
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    QSignalSpy colors(&manager(), &ThemeManager::primaryColorChanged);
    manager().setTheme(ThemeManager::Dark);
    QCOMPARE(manager().theme(), ThemeManager::Dark);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QCOMPARE(qApp->styleSheet(), kDarkSheet);
    manager().setTheme(ThemeManager::Light);
    QCOMPARE(manager().theme(), ThemeManager::Light);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#131923"_s);
    QCOMPARE(qApp->styleSheet(), kLightSheet);
    QCOMPARE(themes.count(), 2);
    QCOMPARE(themes[0][0].value<ThemeManager::Theme>(), ThemeManager::Dark);
    QCOMPARE(themes[1][0].value<ThemeManager::Theme>(), ThemeManager::Light);
    QCOMPARE(colors.count(), 0);
}

// The theme is stored as it comes; its fixed shades are dark only for Dark itself.
void TestThemeManager::themeOutOfRangeIsDarkInLightShades()
{
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    const auto odd = ThemeManager::Theme(2);
    manager().setTheme(odd);
    QCOMPARE(int(manager().theme()), 2);
    QCOMPARE(themes.count(), 1);
    QCOMPARE(int(themes[0][0].value<ThemeManager::Theme>()), 2);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QCOMPARE(qApp->styleSheet(), kDarkSheet);
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(u"#121212"_s));
    QCOMPARE(QApplication::palette().color(QPalette::Midlight), QColor(u"#F3F4F6"_s));
}

void TestThemeManager::setDarkModeStylesNothing()
{
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    QSignalSpy colors(&manager(), &ThemeManager::primaryColorChanged);
    manager().setDarkMode(true);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QCOMPARE(manager().theme(), ThemeManager::Dark);
    manager().setDarkMode(false);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#131923"_s);
    QCOMPARE(manager().theme(), ThemeManager::Light);
    QCOMPARE(qApp->styleSheet(), kOtherSheet);
    QCOMPARE(QApplication::palette(), oddPalette());
    QCOMPARE(themes.count(), 2);
    QCOMPARE(themes[0][0].value<ThemeManager::Theme>(), ThemeManager::Dark);
    QCOMPARE(themes[1][0].value<ThemeManager::Theme>(), ThemeManager::Light);
    QCOMPARE(colors.count(), 0);
}

void TestThemeManager::everySwitchIsAnnounced()
{
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    manager().setDarkMode(false);
    manager().setDarkMode(false);
    QCOMPARE(themes.count(), 2);
    manager().setTheme(ThemeManager::Light);
    manager().setTheme(ThemeManager::Light);
    QCOMPARE(themes.count(), 4);
}

void TestThemeManager::setPrimaryColor_data()
{
    QTest::addColumn<QString>("hex");
    QTest::newRow("capitals") << u"#AB12CD"_s;
    QTest::newRow("small letters") << u"#ab12cd"_s;
    QTest::newRow("translucent") << u"#80AB12CD"_s;
    QTest::newRow("by name") << u"tomato"_s;
}

void TestThemeManager::setPrimaryColor()
{
    QFETCH(const QString, hex);
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    QSignalSpy colors(&manager(), &ThemeManager::primaryColorChanged);
    manager().setPrimaryColor(hex);
    for (const QString &token : { u"@PRIMARY"_s, u"@PRIMARY_HOVER"_s, u"@PRIMARY_DARK"_s })
        QCOMPARE(manager().color(token), hex);
    QCOMPARE(manager().color(u"@TEXT"_s), u"#111827"_s);
    QCOMPARE(manager().resolve(u"@PRIMARY_DARK"_s), hex);
    QCOMPARE(qApp->styleSheet(), QString(kLightSheet).replace(u"#3B5CD8"_s, hex));
    QCOMPARE(QApplication::palette().color(QPalette::Highlight), QColor(hex));
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(u"#F5F6F8"_s));
    QCOMPARE(colors.count(), 1);
    QCOMPARE(colors[0][0].toString(), hex);
    QCOMPARE(themes.count(), 0);
    QCOMPARE(manager().theme(), ThemeManager::Light);
}

void TestThemeManager::primaryColorIsLostAtTheNextSwitch()
{
    const auto primaries = [] {
        return QStringList { manager().color(u"@PRIMARY"_s), manager().color(u"@PRIMARY_HOVER"_s),
                             manager().color(u"@PRIMARY_DARK"_s) };
    };
    const QStringList light { u"#3B5CD8"_s, u"#2A43A6"_s, u"#243B94"_s };
    const QStringList dark { u"#4D74F8"_s, u"#6B8AF9"_s, u"#3B5CD8"_s };
    manager().setPrimaryColor(u"#AB12CD"_s);
    manager().setTheme(ThemeManager::Light);
    QCOMPARE(primaries(), light);
    manager().setPrimaryColor(u"#AB12CD"_s);
    manager().setDarkMode(false);
    QCOMPARE(primaries(), light);
    manager().setPrimaryColor(u"#AB12CD"_s);
    manager().setTheme(ThemeManager::Dark);
    QCOMPARE(primaries(), dark);
    manager().setPrimaryColor(u"#AB12CD"_s);
    manager().setDarkMode(true);
    QCOMPARE(primaries(), dark);
}

// Who hears of a change finds it done.
void TestThemeManager::signalsFollowTheChange()
{
    QObject context;
    QStringList heard;
    connect(&manager(), &ThemeManager::themeChanged, &context, [&heard](ThemeManager::Theme theme) {
        heard << QString::number(theme) << QString::number(manager().theme())
              << manager().color(u"@INS_TX"_s) << qApp->styleSheet()
              << QApplication::palette().color(QPalette::Window).name();
    });
    connect(&manager(), &ThemeManager::primaryColorChanged, &context, [&heard](const QString &hex) {
        heard << hex << manager().color(u"@PRIMARY"_s) << qApp->styleSheet()
              << QApplication::palette().color(QPalette::Highlight).name();
    });
    manager().setTheme(ThemeManager::Dark);
    QCOMPARE(heard, QStringList({ u"1"_s, u"1"_s, u"#EDF1FA"_s, kDarkSheet, u"#121212"_s }));
    heard.clear();
    manager().setPrimaryColor(u"#AB12CD"_s);
    QCOMPARE(
        heard,
        QStringList({ u"#AB12CD"_s, u"#AB12CD"_s,
                      QString(kDarkSheet).replace(u"#4D74F8"_s, u"#AB12CD"_s), u"#ab12cd"_s }));
}

void TestThemeManager::missingSheetChangesNothing()
{
    Q_CLEANUP_RESOURCE(stylesheet);
    const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(stylesheet); });
    constexpr auto warning = "ThemeManager: Could not open base_theme.qss from resources.";
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    QSignalSpy colors(&manager(), &ThemeManager::primaryColorChanged);

    QTest::ignoreMessage(QtWarningMsg, warning);
    manager().applyStyleSheet();
    QTest::ignoreMessage(QtWarningMsg, warning);
    manager().setTheme(ThemeManager::Dark);
    QTest::ignoreMessage(QtWarningMsg, warning);
    manager().setPrimaryColor(u"#123456"_s);
    QCOMPARE(themes.count(), 1);
    QCOMPARE(colors.count(), 1);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QCOMPARE(manager().color(u"@PRIMARY"_s), u"#123456"_s);
    QCOMPARE(qApp->styleSheet(), kOtherSheet);
    QCOMPARE(QApplication::palette(), oddPalette());
}

QTEST_MAIN(TestThemeManager)
#include "tst_thememanager.moc"
