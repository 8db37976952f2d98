#include "theme/tokens.h"

#include <QColor>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cmath>

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

// The least contrasts of WCAG 2.2, success criteria 1.4.3 (text) and 1.4.11 (marks and controls).
// Faint inks, which only accompany a readable one, are held to the latter.
constexpr double kText = 4.5;
constexpr double kMark = 3.0;
// The wizard's captions fall short of that on its light rail and panels, at 2.76 and 2.89. Their
// colours are fixed, so this only keeps them from becoming fainter.
constexpr double kCaption = 2.7;

struct Readable
{
    double contrast;
    const char *inks; // each of them on each of the surfaces
    const char *surfaces; // "@A/@B": the translucent A laid over B
};

constexpr Readable kReadable[] = {
    { kText, "@TEXT", "@BACKGROUND @CARD @CARD_TOP @INPUT_BG" },
    { kText, "@TEXT_INPUT", "@INPUT_BG" },
    { kText, "@HAIRLINE_INK @IVORY @MONO_VAL", "@CARD_TOP" },
    { kMark, "@TEXT_SECONDARY", "@BACKGROUND @CARD" },
    { kMark, "@PRIMARY @ERROR @ERROR_HOVER @ERROR_PRESSED @COPPER @BRASS @EMERALD", "@CARD" },
    { kMark, "@SUCCESS", "@CARD @SUCCESS_BG" },
    { kMark, "@DISABLED_TEXT", "@DISABLED_BG" },
    { kText, "@DLG_TITLE @DLG_BODY @DLG_ERROR @DLG_SUCCESS", "@DLG_SURFACE" },
    { kText, "@DLG_BODY", "@DLG_CODE_BG" },
    { kMark, "@DLG_MUTED", "@DLG_SURFACE" },
    { kMark, "@DLG_CLOSE_ICON", "@DLG_CLOSE_BG @DLG_CLOSE_HOVER" },
    { kText, "@WN_INK @WN_INK_SOFT", "@WN_SURFACE" },
    { kText, "@WN_RAIL_INK", "@WN_SURFACE_SUNK" },
    { kText, "@WN_BADGE_INK", "@WN_BADGE_BG" },
    { kMark, "@WN_INK_FAINT", "@WN_SURFACE" },
    { kMark, "@WN_RAIL_INK_SOFT", "@WN_SURFACE_SUNK" },
    { kMark, "@FILE_SCHEMATIC @FILE_BOARD @FILE_HARDWARE", "@CARD" },
    { kText, "@HS_TEXT", "@HS_PANEL @HS_HOVER" },
    { kMark, "@HS_TEXT_MUTED", "@HS_PANEL @HS_HOVER" },
    { kMark, "@SWITCH_THUMB", "@SWITCH_TRACK" },
    { kText, "@LOADER_INK @LOADER_DANGER", "@LOADER_CARD" },
    { kMark, "@LOADER_DIM", "@LOADER_CARD" },
    { kText, "@TOOLTIP_TEXT", "@TOOLTIP_BG" },
    { kText, "@TTIP_INK @TTIP_LABEL", "@TTIP_SURFACE" },
    { kMark, "@TTIP_UNIT", "@TTIP_SURFACE" },
    { kText, "@LGN_INK @LGN_INK_SOFT", "@LGN_SURFACE @LGN_FIELD @LGN_POPUP @LGN_POPUP_HOVER" },
    { kText, "@LGN_INK", "@LGN_GHOST @LGN_GHOST_HOVER" },
    { kText, "@LGN_ACCENT @LGN_ACCENT_STRONG", "@LGN_SURFACE @LGN_ACCENT_SOFT" },
    { kText, "#FFFFFF", "@LGN_BTN_TOP @LGN_BTN_BOTTOM" }, // button text is white in both themes
    { kText, "#FFFFFF", "@LGN_BTN_TOP_HOVER @LGN_BTN_BOTTOM_HOVER" },
    { kText, "@LGN_DANGER", "@LGN_SURFACE @LGN_DANGER_SOFT" },
    { kText, "@LGN_WARN", "@LGN_SURFACE" },
    { kText, "@LGN_HINT_INK", "@LGN_HINT_BG" },
    { kMark, "@LGN_FIELD_FOCUS", "@LGN_SURFACE @LGN_FIELD" },
    { kMark, "@LGN_DISABLED_INK", "@LGN_DISABLED" },
    { kText, "@SLN_INK @SLN_INK_2", "@SLN_CHASSIS @SLN_CHASSIS_2 @SLN_PANEL @SLN_WELL" },
    { kText, "@SLN_INK @SLN_ACCENT", "@SLN_PANEL @SLN_HOVER/@SLN_PANEL" },
    { kText, "@SLN_INK @SLN_ACCENT", "@SLN_ACCENT_WASH/@SLN_PANEL" },
    { kText, "@SLN_ACCENT_INK", "@SLN_ACCENT" },
    { kMark, "@SLN_INK_3", "@SLN_CHASSIS @SLN_CHASSIS_2 @SLN_PANEL @SLN_WELL" },
    { kText, "@RPN_TITLE", "@RPN_HEAD" },
    { kText, "@RPN_TEXT @RPN_TOK", "@RPN_SURFACE @RPN_HOVER/@RPN_SURFACE" },
    { kMark, "@RPN_MUTED @RPN_CHECK", "@RPN_SURFACE @RPN_HOVER/@RPN_SURFACE" },
    { kText, "@CHR_ETCH", "@CHR_SHELL @CHR_SHELL_HI @CHR_SHELL_LO" },
    { kText, "@CHR_KEY_INK", "@CHR_KEY @CHR_KEY_HI @CHR_KEY_HOVER_HI @CHR_KEY_HOVER_LO" },
    { kText, "@CHR_ALL_INK", "@CHR_ALL_TOP @CHR_ALL_BOT" },
    { kMark, "@CHR_ETCH_DIM", "@CHR_SHELL @CHR_SHELL_HI @CHR_SHELL_LO" },
    { kText, "@HDR_INK @HDR_STEEL @HDR_LINK", "@HDR_SURFACE @HDR_BAND" },
    { kText, "@HDR_ACTION_INK", "@HDR_ACTION" },
    { kText, "@HDR_SIGNAL", "@HDR_SURFACE @HDR_SIGNAL_BG" },
    { kText, "@HDR_OK", "@HDR_SURFACE @HDR_OK_BG" },
    { kText, "@HDR_BAD", "@HDR_SURFACE @HDR_BAD_BG" },
    { kMark, "@HDR_FAINT", "@HDR_SURFACE @HDR_BAND" },
    { kText, "@INS_TX @INS_TX2", "@INS_BG @INS_PANEL @INS_RAIL" },
    { kText, "@INS_ACCENT", "@INS_BG @INS_RAIL" },
    { kText, "@INS_ACCENT_HOVER", "@INS_BG" },
    { kMark, "@INS_TX3 @INS_RED @INS_OK @INS_WARN", "@INS_BG" },
    { kMark, "@INS_OK", "@INS_SEAL_BG" },
    { kCaption, "@INS_TX3", "@INS_PANEL @INS_RAIL" },
    { kText, "@RFFE_TEXT @RFFE_TEXT_DIM", "@RFFE_BG @RFFE_SURFACE @RFFE_SURFACE_RAISED" },
    { kText, "@RFFE_TEXT @RFFE_TEXT_DIM", "@RFFE_SURFACE_SUNKEN" },
    { kText, "@RFFE_ACCENT @RFFE_ACCENT_STRONG", "@RFFE_SURFACE @RFFE_SURFACE_RAISED" },
    { kText, "@RFFE_ACCENT_INK", "@RFFE_ACCENT @RFFE_ACCENT_STRONG" },
    { kText, "@RFFE_ON_INK", "@RFFE_LED_ON" },
    { kMark, "@RFFE_TEXT_FAINT @RFFE_FOCUS_RING", "@RFFE_BG @RFFE_SURFACE" },
    { kMark, "@RFFE_BRAND_RED", "@RFFE_BG @RFFE_SURFACE" },
    { kMark, "@RFFE_LED_ON @RFFE_LED_DANGER @RFFE_LED_SCAN", "@RFFE_SURFACE @RFFE_SURFACE_SUNKEN" },
};

// Grounds that follow the theme. Not among them: fills in an accent or grey that carry their own
// ink (badge, buttons, the "all" key, disabled controls, switches), and scrims and shadows.
constexpr auto kSurfaces =
    "@BACKGROUND @CARD @CARD_TOP @INPUT_BG @SUCCESS_BG @SCROLLBAR_BG @DLG_SURFACE @DLG_CODE_BG "
    "@DLG_CLOSE_BG @DLG_CLOSE_HOVER @WN_SURFACE @WN_SURFACE_SUNK @HS_PANEL @HS_HOVER @HS_TRACK "
    "@LOADER_CARD @TOOLTIP_BG @TTIP_SURFACE @LGN_SURFACE @LGN_FIELD @LGN_ACCENT_SOFT @LGN_GHOST "
    "@LGN_GHOST_HOVER @LGN_DANGER_SOFT @LGN_DISABLED @LGN_HINT_BG @LGN_POPUP @LGN_POPUP_HOVER "
    "@SLN_CHASSIS @SLN_CHASSIS_2 @SLN_PANEL @SLN_WELL @RPN_SURFACE @RPN_HEAD @CHR_SHELL "
    "@CHR_SHELL_HI @CHR_SHELL_LO @CHR_SLOT @CHR_KEY @CHR_KEY_HI @CHR_KEY_HOVER_HI "
    "@CHR_KEY_HOVER_LO @HDR_SURFACE @HDR_BAND @HDR_TRACK @HDR_SIGNAL_BG @HDR_OK_BG @HDR_BAD_BG "
    "@INS_BG @INS_PANEL @INS_RAIL @INS_SEAL_BG @RFFE_BG @RFFE_SURFACE @RFFE_SURFACE_RAISED "
    "@RFFE_SURFACE_SUNKEN";
constexpr double kDarkGroundMost = 0.2; // the lightest a dark ground may be, in luminance of 0 to 1
constexpr double kLightGroundLeast = 0.6; // the darkest a light one may be

// Contrast of a hover state with the state at rest: seen, but no other colour.
constexpr double kFaintestStep = 1.03;
constexpr double kWidestStep = 1.6;

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ');
}

const char *themeName(bool dark)
{
    return dark ? "dark" : "light";
}

const ThemeToken *find(const QString &name)
{
    const auto tokens = themeTokens();
    const auto row = std::ranges::find(tokens, name, &ThemeToken::name);
    return row == tokens.end() ? nullptr : &*row;
}

// A colour text stands for itself, so that a row of the tables above may name white.
QColor colour(const QString &token, bool dark)
{
    if (token.startsWith(u'#'))
        return QColor::fromString(token);
    const ThemeToken *row = find(token);
    return row ? QColor::fromString(dark ? row->dark : row->light) : QColor();
}

QColor over(const QColor &front, const QColor &back)
{
    const auto mix = [a = front.alphaF()](float f, float b) { return f * a + b * (1 - a); };
    return QColor::fromRgbF(mix(front.redF(), back.redF()), mix(front.greenF(), back.greenF()),
                            mix(front.blueF(), back.blueF()));
}

// "@A" or "@A/@B", A laid over B.
QColor surfaceColour(const QString &surface, bool dark)
{
    const QColor top = colour(surface.section(u'/', 0, 0), dark);
    return surface.contains(u'/') ? over(top, colour(surface.section(u'/', 1), dark)) : top;
}

// Relative luminance as WCAG 2.2 defines it: https://www.w3.org/TR/WCAG22/#dfn-relative-luminance
double luminance(const QColor &colour)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

// Contrast ratio, 1 to 21, from the same place: https://www.w3.org/TR/WCAG22/#dfn-contrast-ratio
double contrast(const QColor &a, const QColor &b)
{
    const auto [low, high] = std::minmax({ luminance(a), luminance(b) });
    return (high + 0.05) / (low + 0.05);
}

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
    void hoverStatesStayNear();
    void contrastIsThatOfWcag();
    void inksAreReadable_data();
    void inksAreReadable();
    void surfacesFollowTheTheme();
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
    const ThemeToken *token = find(QString::fromLatin1(QTest::currentDataTag()));
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
    QVERIFY(find(u"@PRIMARY"_s) && find(u"@PRIMARY_DARK"_s));
    QCOMPARE(find(u"@PRIMARY_DARK"_s)->dark, find(u"@PRIMARY"_s)->light);
}

void TestTokens::glowsAreTheirLampsColour()
{
    int glows = 0;
    for (const ThemeToken &glow : themeTokens()) {
        if (!glow.name.endsWith("_GLOW"_L1))
            continue;
        const ThemeToken *lamp = find(glow.name.chopped(5));
        QVERIFY2(lamp, glow.name.data());
        QCOMPARE(glow.light.last(6), lamp->light.last(6));
        QCOMPARE(glow.dark.last(6), lamp->dark.last(6));
        ++glows;
    }
    QCOMPARE(glows, 3);
}

void TestTokens::hoverStatesStayNear()
{
    int hovers = 0;
    for (const ThemeToken &hover : themeTokens()) {
        // Not each hover state has a token of its own for the state at rest.
        const ThemeToken *rest = find(QString(hover.name).remove("_HOVER"_L1));
        if (!rest || rest == &hover)
            continue;
        for (const bool dark : { false, true }) {
            const double step = contrast(colour(hover.name, dark), colour(rest->name, dark));
            QVERIFY2(step > kFaintestStep && step < kWidestStep, hover.name.data());
        }
        ++hovers;
    }
    QCOMPARE(hovers, 10);
}

void TestTokens::contrastIsThatOfWcag()
{
    QCOMPARE(contrast(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrast(Qt::red, Qt::red), 1.0);
    // The two greys on either side of readable text on white.
    QVERIFY(contrast(0x767676, Qt::white) >= kText);
    QVERIFY(contrast(0x777777, Qt::white) < kText);
}

void TestTokens::inksAreReadable_data()
{
    QTest::addColumn<QString>("ink");
    QTest::addColumn<QString>("surface");
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("least");
    for (const auto &[least, inks, surfaces] : kReadable) {
        for (const QString &ink : words(inks)) {
            for (const QString &surface : words(surfaces)) {
                for (const bool dark : { false, true })
                    QTest::addRow("%s on %s, %s", qPrintable(ink), qPrintable(surface),
                                  themeName(dark))
                        << ink << surface << dark << least;
            }
        }
    }
}

void TestTokens::inksAreReadable()
{
    QFETCH(const QString, ink);
    QFETCH(const QString, surface);
    QFETCH(const bool, dark);
    QFETCH(const double, least);
    const QColor inkColour = colour(ink, dark);
    const QColor ground = surfaceColour(surface, dark);
    QVERIFY(inkColour.isValid() && inkColour.alpha() == 255);
    QVERIFY(ground.isValid() && ground.alpha() == 255);
    const double ratio = contrast(inkColour, ground);
    QVERIFY2(ratio >= least, qPrintable(QString::number(ratio)));
}

void TestTokens::surfacesFollowTheTheme()
{
    for (const QString &surface : words(kSurfaces)) {
        QVERIFY2(find(surface), qPrintable(surface));
        QVERIFY2(luminance(colour(surface, false)) > kLightGroundLeast, qPrintable(surface));
        QVERIFY2(luminance(colour(surface, true)) < kDarkGroundMost, qPrintable(surface));
    }
}

QTEST_APPLESS_MAIN(TestTokens)
#include "tst_tokens.moc"
