#include "support/stricttest.h"
#include "theme/thememanager.h"
#include "theme/tokens.h"

#include <QApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

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

constexpr auto kNoSheet = "ThemeManager: Could not open base_theme.qss from resources.";
constexpr auto kNoApplication = "ThemeManager: QApplication instance not found.";

ThemeManager &manager()
{
    return ThemeManager::instance();
}

/// A palette that no theme gives, in one colour.
QPalette oddPalette()
{
    QPalette palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        palette.setBrush(QPalette::ColorRole(role), QColor(0xAB, 0x12, 0xCD));
    return palette;
}

/// Each call that styles the application prints `warning` instead, and does everything else.
void styleWithWarning(const char *warning)
{
    const QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    const QSignalSpy colors(&manager(), &ThemeManager::primaryColorChanged);
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
}

} // namespace

// There is one manager: instance() creates it, and nothing else can.
static_assert(!std::is_default_constructible_v<ThemeManager>);
static_assert(ThemeManager::Light == 0 && ThemeManager::Dark == 1);

/// What needs a process that has no QApplication yet.
class TestThemeManagerHeadless : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void withoutApplication();
};

void TestThemeManagerHeadless::withoutApplication()
{
    QVERIFY(!QCoreApplication::instance());
    QCOMPARE(manager().theme(), ThemeManager::Light);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#131923"_s);
    styleWithWarning(kNoApplication);
    manager().setDarkMode(false); // styles nothing, so it does not warn
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#131923"_s);
}

class TestThemeManager : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyTokenHasItsColour();
    void unknownTokenHasNoColor();
    void resolve_data();
    void resolve();
    void palette();
    void themeOutOfRangeIsDarkInLightShades();
    void everySwitchIsAnnounced();
    void setPrimaryColor();
    void primaryColorIsLostAtTheNextSwitch();
    void signalsFollowTheChange();
    void missingSheetChangesNothing();
};

void TestThemeManager::init()
{
    StrictTest::init();
    manager().setDarkMode(false);
    qApp->setStyleSheet(kOtherSheet);
    QApplication::setPalette(oddPalette());
}

void TestThemeManager::everyTokenHasItsColour()
{
    for (const bool dark : { false, true }) {
        manager().setDarkMode(dark);
        for (const ThemeToken &token : themeTokens()) {
            const QString colour = dark ? token.dark : token.light;
            QCOMPARE(manager().color(token.name), colour);
            QCOMPARE(manager().resolve("a: "_L1 + token.name + ";b"_L1),
                     QString("a: "_L1 + colour + ";b"_L1));
        }
    }
}

void TestThemeManager::unknownTokenHasNoColor()
{
    for (const QString &token : { u""_s, u"@NOWHERE"_s, u"INS_TX"_s, u"@"_s, u"@ins_tx"_s,
                                  u"@INS_T"_s, u"@INS_TX4"_s, u"@INS_TX "_s, u"#131923"_s })
        QCOMPARE(manager().color(token), QString());
}

// What else may stand in a style sheet, the fuzzer tries (fuzz_stylesheet.cpp).
void TestThemeManager::resolve_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("resolved");
    const auto row = [](const char *name, const QString &text, const QString &resolved) {
        QTest::newRow(name) << text << resolved;
    };
    row("long after short", u"@INS_TX @INS_TX2 @INS_TX3"_s, u"#131923 #586371 #8A94A2"_s);
    row("names in names", u"@PRIMARY_DARK @PRIMARY @PRIMARY_HOVER"_s, u"#243B94 #3B5CD8 #2A43A6"_s);
    row("unknown", u"@NOWHERE@INS_BG@NOT_HERE"_s, u"@NOWHERE#FFFFFF@NOT_HERE"_s);
    row("sign alone", u"@ @@ a@ @ INS_BG @@INS_BG"_s, u"@ @@ a@ @ INS_BG @#FFFFFF"_s);
    row("letters after", u"@INS_TXfoo @INS_TXT"_s, u"#131923foo #131923T"_s);
    row("digit after", u"@INS_TX4 @INS_TX22"_s, u"#1319234 #5863712"_s);
}

void TestThemeManager::resolve()
{
    QFETCH(const QString, text);
    QFETCH(const QString, resolved);
    QCOMPARE(manager().resolve(text), resolved);
}

void TestThemeManager::palette()
{
    const struct
    {
        QPalette::ColorRole role;
        QString light;
        QString dark;
    } roles[] = {
        { QPalette::WindowText, u"#111827"_s, u"#F3F4F6"_s },
        { QPalette::Text, u"#111827"_s, u"#F3F4F6"_s },
        { QPalette::ButtonText, u"#111827"_s, u"#F3F4F6"_s },
        { QPalette::Base, u"#FFFFFF"_s, u"#1E1E1E"_s },
        { QPalette::Window, u"#F5F6F8"_s, u"#121212"_s },
        { QPalette::AlternateBase, u"#F9FAFB"_s, u"#2D2D2D"_s },
        { QPalette::Button, u"#FFFFFF"_s, u"#1E1E1E"_s },
        { QPalette::Light, u"#FFFFFF"_s, u"#374151"_s },
        { QPalette::Midlight, u"#F3F4F6"_s, u"#2D2D2D"_s },
        { QPalette::Mid, u"#9CA3AF"_s, u"#4B5563"_s },
        { QPalette::Dark, u"#6B7280"_s, u"#6B7280"_s },
        { QPalette::Shadow, u"#374151"_s, u"#111827"_s },
        { QPalette::Highlight, u"#3B5CD8"_s, u"#4D74F8"_s },
        { QPalette::HighlightedText, u"#FFFFFF"_s, u"#FFFFFF"_s },
    };
    for (const bool dark : { false, true }) {
        QPalette expected = oddPalette(); // the other roles stay
        for (const auto &[role, light, darkColour] : roles)
            expected.setBrush(role, QColor(dark ? darkColour : light));
        manager().setTheme(dark ? ThemeManager::Dark : ThemeManager::Light);
        QCOMPARE(QApplication::palette(), expected);
    }
}

// The theme is stored as it comes; its fixed shades are dark only for Dark itself.
void TestThemeManager::themeOutOfRangeIsDarkInLightShades()
{
    manager().setTheme(ThemeManager::Theme(2));
    QCOMPARE(int(manager().theme()), 2);
    QCOMPARE(qApp->styleSheet(), kDarkSheet);
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(u"#121212"_s));
    QCOMPARE(QApplication::palette().color(QPalette::Midlight), QColor(u"#F3F4F6"_s));
}

void TestThemeManager::everySwitchIsAnnounced()
{
    QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    manager().setDarkMode(false);
    QCOMPARE(manager().theme(), ThemeManager::Light);
    manager().setDarkMode(true);
    QCOMPARE(manager().theme(), ThemeManager::Dark);
    QCOMPARE(manager().color(u"@INS_TX"_s), u"#EDF1FA"_s);
    QCOMPARE(qApp->styleSheet(), kOtherSheet); // this way styles nothing
    QCOMPARE(QApplication::palette(), oddPalette());
    manager().setTheme(ThemeManager::Dark);
    manager().setTheme(ThemeManager::Light);
    QList<ThemeManager::Theme> announced;
    for (const QVariantList &arguments : themes)
        announced << arguments[0].value<ThemeManager::Theme>();
    QCOMPARE(announced,
             QList({ ThemeManager::Light, ThemeManager::Dark, ThemeManager::Dark,
                     ThemeManager::Light }));
}

void TestThemeManager::setPrimaryColor()
{
    const QSignalSpy themes(&manager(), &ThemeManager::themeChanged);
    for (const QString &hex : { u"#AB12CD"_s, u"#80AB12CD"_s, u"tomato"_s }) {
        manager().setPrimaryColor(hex);
        QCOMPARE(manager().resolve(u"@PRIMARY @PRIMARY_HOVER @PRIMARY_DARK @TEXT"_s),
                 u"%1 %1 %1 #111827"_s.arg(hex));
        QCOMPARE(qApp->styleSheet(), QString(kLightSheet).replace(u"#3B5CD8"_s, hex));
        QCOMPARE(QApplication::palette().color(QPalette::Highlight), QColor(hex));
    }
    QCOMPARE(themes.count(), 0);
}

void TestThemeManager::primaryColorIsLostAtTheNextSwitch()
{
    for (const bool styled : { true, false }) {
        for (const auto theme : { ThemeManager::Light, ThemeManager::Dark }) {
            manager().setPrimaryColor(u"#AB12CD"_s);
            if (styled)
                manager().setTheme(theme);
            else
                manager().setDarkMode(theme == ThemeManager::Dark);
            QCOMPARE(manager().resolve(u"@PRIMARY @PRIMARY_HOVER @PRIMARY_DARK"_s),
                     theme == ThemeManager::Dark ? u"#4D74F8 #6B8AF9 #3B5CD8"_s
                                                 : u"#3B5CD8 #2A43A6 #243B94"_s);
        }
    }
}

void TestThemeManager::signalsFollowTheChange()
{
    QObject context;
    QStringList seen;
    connect(&manager(), &ThemeManager::themeChanged, &context, [&seen](ThemeManager::Theme theme) {
        seen << QString::number(theme) << QString::number(manager().theme())
             << manager().color(u"@INS_TX"_s) << qApp->styleSheet()
             << QApplication::palette().color(QPalette::Window).name();
    });
    connect(&manager(), &ThemeManager::primaryColorChanged, &context, [&seen](const QString &hex) {
        seen << hex << manager().color(u"@PRIMARY"_s) << qApp->styleSheet()
             << QApplication::palette().color(QPalette::Highlight).name();
    });
    manager().setTheme(ThemeManager::Dark);
    QCOMPARE(seen, QStringList({ u"1"_s, u"1"_s, u"#EDF1FA"_s, kDarkSheet, u"#121212"_s }));
    seen.clear();
    manager().setPrimaryColor(u"#AB12CD"_s);
    QCOMPARE(
        seen,
        QStringList({ u"#AB12CD"_s, u"#AB12CD"_s,
                      QString(kDarkSheet).replace(u"#4D74F8"_s, u"#AB12CD"_s), u"#ab12cd"_s }));
}

void TestThemeManager::missingSheetChangesNothing()
{
    Q_CLEANUP_RESOURCE(stylesheet);
    const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(stylesheet); });
    styleWithWarning(kNoSheet);
    QCOMPARE(qApp->styleSheet(), kOtherSheet);
    QCOMPARE(QApplication::palette(), oddPalette());
}

int main(int argc, char **argv)
{
    TestThemeManagerHeadless headless;
    const int failed = QTest::qExec(&headless, argc, argv);
    const QApplication application(argc, argv);
    TestThemeManager test;
    return failed + QTest::qExec(&test, argc, argv);
}

#include "tst_thememanager.moc"
