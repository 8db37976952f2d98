#include "theme/tokenlookup.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kTokenCount = 209;

struct Family
{
    const char *prefix;
    int count;
    const char *parts; // what follows the prefix, in table order
};

// The base tokens have no prefix of their own, so theirs is the "@" that all tokens begin with.
constexpr Family kFamilies[] = {
    { "@", 28,
      "PRIMARY PRIMARY_HOVER PRIMARY_DARK BACKGROUND CARD TEXT TEXT_SECONDARY TEXT_INPUT BORDER "
      "BORDER_INPUT INPUT_BG ERROR ERROR_HOVER ERROR_PRESSED SUCCESS SUCCESS_BG COPPER "
      "COPPER_HOT BRASS BRASS_LIGHT BRASS_DIM EMERALD CARD_TOP HAIRLINE_INK IVORY MONO_VAL "
      "DISABLED_BG DISABLED_TEXT" },
    { "@SCROLLBAR_", 3, "BG HANDLE HANDLE_HOVER" },
    { "@DLG_", 11,
      "SURFACE BORDER TITLE BODY MUTED CODE_BG CLOSE_BG CLOSE_HOVER CLOSE_ICON ERROR SUCCESS" },
    { "@WN_", 12,
      "RAIL_INK BADGE_BG BADGE_INK SURFACE SURFACE_SUNK INK INK_SOFT LINE SCRIM RAIL_INK_SOFT "
      "INK_FAINT THUMB" },
    { "@FILE_", 3, "SCHEMATIC BOARD HARDWARE" },
    { "@HS_", 6, "PANEL HOVER TEXT TEXT_MUTED BORDER TRACK" },
    { "@SWITCH_", 2, "TRACK THUMB" },
    { "@LOADER_", 5, "CARD EDGE INK DIM DANGER" },
    { "@TOOLTIP_", 3, "BG TEXT BORDER" },
    { "@TTIP_", 6, "SURFACE EDGE DIVIDER INK LABEL UNIT" },
    { "@LGN_", 29,
      "SURFACE EDGE INK INK_SOFT FIELD FIELD_EDGE FIELD_EDGE_HOVER FIELD_FOCUS ACCENT "
      "ACCENT_STRONG ACCENT_SOFT BTN_TOP BTN_BOTTOM BTN_TOP_HOVER BTN_BOTTOM_HOVER GHOST "
      "GHOST_HOVER GHOST_EDGE DANGER DANGER_SOFT WARN DISABLED DISABLED_INK HINT_INK HINT_BG "
      "HINT_EDGE POPUP POPUP_EDGE POPUP_HOVER" },
    { "@SLN_", 17,
      "CHASSIS CHASSIS_2 PANEL WELL LINE LINE_SOFT INK INK_2 INK_3 ACCENT ACCENT_INK ACCENT_WASH "
      "ACCENT_LINE HOVER BEVEL DOT_RING GRID" },
    { "@RPN_", 9, "SURFACE HEAD EDGE TITLE TEXT TOK MUTED CHECK HOVER" },
    { "@CHR_", 14,
      "SHELL SHELL_HI SHELL_LO SLOT KEY KEY_HI KEY_HOVER_HI KEY_HOVER_LO ETCH ETCH_DIM KEY_INK "
      "ALL_TOP ALL_BOT ALL_INK" },
    { "@HDR_", 21,
      "SURFACE BAND INK STEEL FAINT HAIRLINE EDGE TRACK LINK ACTION ACTION_INK SIGNAL SIGNAL_BG "
      "SIGNAL_LINE OK OK_BG OK_LINE BAD BAD_BG BAD_LINE SCRIM" },
    { "@INS_", 14, "BG PANEL RAIL LINE LINE2 TX TX2 TX3 ACCENT ACCENT_HOVER RED OK WARN SEAL_BG" },
    { "@RFFE_", 26,
      "BG BACKDROP_DOT SURFACE SURFACE_RAISED SURFACE_SUNKEN BORDER BORDER_SOFT TEXT TEXT_DIM "
      "TEXT_FAINT BRAND_RED ACCENT ACCENT_STRONG ACCENT_INK ON_INK LED_ON LED_ON_GLOW LED_OFF "
      "LED_DANGER LED_DANGER_GLOW LED_SCAN LED_SCAN_GLOW FOCUS_RING SHADOW_INSET SHADOW_AMBIENT "
      "SHADOW_CONTACT" },
};

struct FixedValue
{
    const char *token;
    const char *light;
    const char *dark;
};

// What the wizard's screens and the application's palette are drawn in, and marks of the main
// application that must look the same in both programs: changing one is a decision, never a slip.
constexpr FixedValue kFixedValues[] = {
    { "@PRIMARY", "#3B5CD8", "#4D74F8" },
    { "@PRIMARY_HOVER", "#2A43A6", "#6B8AF9" },
    { "@PRIMARY_DARK", "#243B94", "#3B5CD8" },
    { "@BACKGROUND", "#F5F6F8", "#121212" },
    { "@CARD", "#FFFFFF", "#1E1E1E" },
    { "@TEXT", "#111827", "#F3F4F6" },
    { "@TEXT_SECONDARY", "#6B7280", "#9CA3AF" },
    { "@TEXT_INPUT", "#374151", "#E5E7EB" },
    { "@BORDER", "#E5E7EB", "#374151" },
    { "@BORDER_INPUT", "#D1D5DB", "#4B5563" },
    { "@INPUT_BG", "#F9FAFB", "#2D2D2D" },
    { "@ERROR", "#E81123", "#FF4B4B" },
    { "@ERROR_HOVER", "#C50E1D", "#FF6B6B" },
    { "@ERROR_PRESSED", "#A50B18", "#E53939" },
    { "@SUCCESS", "#17835A", "#35C088" },
    { "@SUCCESS_BG", "#E4F5ED", "#10281F" },
    { "@COPPER", "#C4681F", "#E08A3C" },
    { "@COPPER_HOT", "#E8973F", "#F4A85A" },
    { "@BRASS", "#9C7A3D", "#C6A15B" },
    { "@BRASS_LIGHT", "#B28A44", "#E3C485" },
    { "@BRASS_DIM", "#C9AC74", "#7C6640" },
    { "@EMERALD", "#2F8F6D", "#49B08D" },
    { "@CARD_TOP", "#FAF5EB", "#171A1F" },
    { "@HAIRLINE_INK", "#14110A", "#FFFFFF" },
    { "@IVORY", "#211D15", "#EEEBE2" },
    { "@MONO_VAL", "#3A352A", "#DBD8CE" },
    { "@DISABLED_BG", "#6C757D", "#374151" },
    { "@DISABLED_TEXT", "#FFFFFF", "#9CA3AF" },
    { "@SCROLLBAR_BG", "#F3F4F6", "#1F2937" },
    { "@SCROLLBAR_HANDLE", "#C7CDD4", "#4B5563" },
    { "@SCROLLBAR_HANDLE_HOVER", "#AEB6BF", "#6B7280" },
    { "@DLG_SURFACE", "#FFFFFF", "#202023" },
    { "@WN_LINE", "#1A141923", "#1CFFFFFF" },
    { "@WN_SCRIM", "#8C0C1018", "#AD04070C" },
    { "@FILE_SCHEMATIC", "#D83B36", "#E04B45" },
    { "@TOOLTIP_BG", "#F4F7FF", "#16223F" },
    { "@LGN_ACCENT", "#2E4BC7", "#8AA6FF" },
    { "@SLN_BEVEL", "#A6FFFFFF", "#14FFFFFF" },
    { "@HDR_INK", "#0F1419", "#E9EDF2" },
    { "@HDR_SCRIM", "#1A0F1419", "#73000000" },
    { "@INS_BG", "#FFFFFF", "#101521" },
    { "@INS_PANEL", "#F6F8FB", "#182031" },
    { "@INS_RAIL", "#EFF3F9", "#0C1019" },
    { "@INS_LINE", "#E3E8EF", "#242C3E" },
    { "@INS_LINE2", "#C5CEDB", "#37425A" },
    { "@INS_TX", "#131923", "#EDF1FA" },
    { "@INS_TX2", "#586371", "#9DAAC6" },
    { "@INS_TX3", "#8A94A2", "#6B7890" },
    { "@INS_ACCENT", "#064CAD", "#8AA6FF" },
    { "@INS_ACCENT_HOVER", "#0A5EC9", "#A5BBFF" },
    { "@INS_RED", "#FF3131", "#FF5C5C" },
    { "@INS_OK", "#1F9D63", "#34C084" },
    { "@INS_WARN", "#B0781A", "#D99A3A" },
    { "@INS_SEAL_BG", "#E3F4EA", "#123322" },
    { "@RFFE_LED_ON_GLOW", "#4D17835A", "#7335C088" },
};

constexpr auto kTranslucent =
    "@WN_LINE @WN_SCRIM @WN_THUMB @SLN_ACCENT_WASH @SLN_ACCENT_LINE @SLN_HOVER @SLN_BEVEL "
    "@SLN_DOT_RING @SLN_GRID @RPN_HOVER @HDR_SCRIM @RFFE_LED_ON_GLOW @RFFE_LED_DANGER_GLOW "
    "@RFFE_LED_SCAN_GLOW @RFFE_SHADOW_INSET @RFFE_SHADOW_AMBIENT @RFFE_SHADOW_CONTACT";

} // namespace

class TestTokens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void namesAreUnique();
    void families_data();
    void families();
    void fixedValues_data();
    void fixedValues();
    void colourTextsAreUpperCaseHex();
    void translucentTokens();
    void darkShadeOfDarkIsPrimaryOfLight();
    void glowsAreTheirLampsColour();
};

void TestTokens::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestTokens::namesAreUnique()
{
    QSet<QLatin1StringView> names;
    for (const ThemeToken &token : themeTokens())
        names.insert(token.name);
    QCOMPARE(themeTokens().size(), size_t(kTokenCount));
    QCOMPARE(names.size(), kTokenCount);
}

void TestTokens::families_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("names");
    int first = 0;
    for (const Family &family : kFamilies) {
        QStringList names = words(family.parts);
        for (QString &name : names)
            name.prepend(QLatin1StringView(family.prefix));
        QTest::newRow(family.prefix) << first << family.count << names;
        first += family.count;
    }
    QCOMPARE(first, kTokenCount);
}

void TestTokens::families()
{
    QFETCH(const int, first);
    QFETCH(const int, count);
    QFETCH(const QStringList, names);
    QVERIFY(size_t(first + count) <= themeTokens().size());
    QStringList inTable;
    for (const ThemeToken &token : themeTokens().subspan(size_t(first), size_t(count)))
        inTable << token.name;
    QCOMPARE(names.size(), count);
    QCOMPARE(inTable, names);
}

void TestTokens::fixedValues_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QString>("dark");
    for (const FixedValue &value : kFixedValues)
        QTest::newRow(value.token)
            << QString::fromLatin1(value.light) << QString::fromLatin1(value.dark);
}

void TestTokens::fixedValues()
{
    QFETCH(const QString, light);
    QFETCH(const QString, dark);
    const ThemeToken *token = findToken(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(token);
    QCOMPARE(token->light, light);
    QCOMPARE(token->dark, dark);
}

void TestTokens::colourTextsAreUpperCaseHex()
{
    static const QRegularExpression nameForm(u"\\A@[A-Z0-9]+(_[A-Z0-9]+)*\\z"_s);
    static const QRegularExpression colourForm(u"\\A#([0-9A-F]{2})?[0-9A-F]{6}\\z"_s);
    for (const ThemeToken &token : themeTokens()) {
        QVERIFY2(nameForm.match(token.name).hasMatch(), token.name.data());
        QVERIFY2(colourForm.match(token.light).hasMatch(), token.name.data());
        QVERIFY2(colourForm.match(token.dark).hasMatch(), token.name.data());
    }
}

void TestTokens::translucentTokens()
{
    QStringList light;
    QStringList dark;
    for (const ThemeToken &token : themeTokens()) {
        if (token.light.size() == 9)
            light << token.name;
        if (token.dark.size() == 9)
            dark << token.name;
    }
    QCOMPARE(light, words(kTranslucent));
    QCOMPARE(dark, words(kTranslucent));
}

void TestTokens::darkShadeOfDarkIsPrimaryOfLight()
{
    QVERIFY(findToken(u"@PRIMARY"_s) && findToken(u"@PRIMARY_DARK"_s));
    QCOMPARE(findToken(u"@PRIMARY_DARK"_s)->dark, findToken(u"@PRIMARY"_s)->light);
}

void TestTokens::glowsAreTheirLampsColour()
{
    int glows = 0;
    for (const ThemeToken &glow : themeTokens()) {
        if (!glow.name.endsWith("_GLOW"_L1))
            continue;
        const ThemeToken *lamp = findToken(glow.name.chopped(5));
        QVERIFY2(lamp, glow.name.data());
        QCOMPARE(glow.light.last(6), lamp->light.last(6));
        QCOMPARE(glow.dark.last(6), lamp->dark.last(6));
        ++glows;
    }
    QCOMPARE(glows, 3);
}

QTEST_APPLESS_MAIN(TestTokens)
#include "tst_tokens.moc"
