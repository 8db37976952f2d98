#include "theme/tokens.h"

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t kTokenCount = 209;

// The rows of a family stand together. Both themes of a token share a row, because one value is
// seldom changed without the other. The wizard's widgets read only the @INS_ family; the others
// belong to the main application, which has this table too (see ThemeManager).
// clang-format off
constexpr ThemeToken kTokens[] = {
    // Base: the application's palette, form controls, states, and the copper and brass accents.
    { "@PRIMARY"_L1,                 "#3B5CD8"_L1,   "#4D74F8"_L1 },
    { "@PRIMARY_HOVER"_L1,           "#2A43A6"_L1,   "#6B8AF9"_L1 },
    { "@PRIMARY_DARK"_L1,            "#243B94"_L1,   "#3B5CD8"_L1 },
    { "@BACKGROUND"_L1,              "#F5F6F8"_L1,   "#121212"_L1 },
    { "@CARD"_L1,                    "#FFFFFF"_L1,   "#1E1E1E"_L1 },
    { "@TEXT"_L1,                    "#111827"_L1,   "#F3F4F6"_L1 },
    { "@TEXT_SECONDARY"_L1,          "#6B7280"_L1,   "#9CA3AF"_L1 },
    { "@TEXT_INPUT"_L1,              "#374151"_L1,   "#E5E7EB"_L1 },
    { "@BORDER"_L1,                  "#E5E7EB"_L1,   "#374151"_L1 },
    { "@BORDER_INPUT"_L1,            "#D1D5DB"_L1,   "#4B5563"_L1 },
    { "@INPUT_BG"_L1,                "#F9FAFB"_L1,   "#2D2D2D"_L1 },
    { "@ERROR"_L1,                   "#E81123"_L1,   "#FF4B4B"_L1 },
    { "@ERROR_HOVER"_L1,             "#C50E1D"_L1,   "#FF6B6B"_L1 },
    { "@ERROR_PRESSED"_L1,           "#A50B18"_L1,   "#E53939"_L1 },
    { "@SUCCESS"_L1,                 "#17835A"_L1,   "#35C088"_L1 },
    { "@SUCCESS_BG"_L1,              "#E4F5ED"_L1,   "#10281F"_L1 },
    { "@COPPER"_L1,                  "#C4681F"_L1,   "#E08A3C"_L1 },
    { "@COPPER_HOT"_L1,              "#E8973F"_L1,   "#F4A85A"_L1 },
    { "@BRASS"_L1,                   "#9C7A3D"_L1,   "#C6A15B"_L1 },
    { "@BRASS_LIGHT"_L1,             "#B28A44"_L1,   "#E3C485"_L1 },
    { "@BRASS_DIM"_L1,               "#C9AC74"_L1,   "#7C6640"_L1 },
    { "@EMERALD"_L1,                 "#2F8F6D"_L1,   "#49B08D"_L1 },
    { "@CARD_TOP"_L1,                "#FAF5EB"_L1,   "#171A1F"_L1 },
    { "@HAIRLINE_INK"_L1,            "#14110A"_L1,   "#FFFFFF"_L1 },
    { "@IVORY"_L1,                   "#211D15"_L1,   "#EEEBE2"_L1 },
    { "@MONO_VAL"_L1,                "#3A352A"_L1,   "#DBD8CE"_L1 },
    { "@DISABLED_BG"_L1,             "#6C757D"_L1,   "#374151"_L1 },
    { "@DISABLED_TEXT"_L1,           "#FFFFFF"_L1,   "#9CA3AF"_L1 },

    // Scroll bars.
    { "@SCROLLBAR_BG"_L1,            "#F3F4F6"_L1,   "#1F2937"_L1 },
    { "@SCROLLBAR_HANDLE"_L1,        "#C7CDD4"_L1,   "#4B5563"_L1 },
    { "@SCROLLBAR_HANDLE_HOVER"_L1,  "#AEB6BF"_L1,   "#6B7280"_L1 },

    // Message dialogs: a neutral sheet with its own round close button.
    { "@DLG_SURFACE"_L1,             "#FFFFFF"_L1,   "#202023"_L1 },
    { "@DLG_BORDER"_L1,              "#E0E3E8"_L1,   "#36363C"_L1 },
    { "@DLG_TITLE"_L1,               "#16181D"_L1,   "#F4F4F6"_L1 },
    { "@DLG_BODY"_L1,                "#3D434D"_L1,   "#D2D2D8"_L1 },
    { "@DLG_MUTED"_L1,               "#6C737F"_L1,   "#9696A0"_L1 },
    { "@DLG_CODE_BG"_L1,             "#F3F4F7"_L1,   "#18181B"_L1 },
    { "@DLG_CLOSE_BG"_L1,            "#EEF0F3"_L1,   "#2D2D32"_L1 },
    { "@DLG_CLOSE_HOVER"_L1,         "#E0E3E8"_L1,   "#3A3A41"_L1 },
    { "@DLG_CLOSE_ICON"_L1,          "#555C68"_L1,   "#C6C6CE"_L1 },
    { "@DLG_ERROR"_L1,               "#CF2A35"_L1,   "#FF6B6B"_L1 },
    { "@DLG_SUCCESS"_L1,             "#17835A"_L1,   "#35C088"_L1 },

    // What's-new sheet over a scrim: a sunk rail of releases beside the notes.
    { "@WN_RAIL_INK"_L1,             "#2A3342"_L1,   "#D5DCE9"_L1 },
    { "@WN_BADGE_BG"_L1,             "#2E4BC7"_L1,   "#8AA6FF"_L1 },
    { "@WN_BADGE_INK"_L1,            "#FFFFFF"_L1,   "#0D1430"_L1 },
    { "@WN_SURFACE"_L1,              "#FFFFFF"_L1,   "#141924"_L1 },
    { "@WN_SURFACE_SUNK"_L1,         "#F3F6FA"_L1,   "#0D1119"_L1 },
    { "@WN_INK"_L1,                  "#141923"_L1,   "#EDF1F8"_L1 },
    { "@WN_INK_SOFT"_L1,             "#566070"_L1,   "#A3AEC2"_L1 },
    { "@WN_LINE"_L1,                 "#1A141923"_L1, "#1CFFFFFF"_L1 },
    { "@WN_SCRIM"_L1,                "#8C0C1018"_L1, "#AD04070C"_L1 },
    { "@WN_RAIL_INK_SOFT"_L1,        "#657081"_L1,   "#8D99B0"_L1 },
    { "@WN_INK_FAINT"_L1,            "#7B8594"_L1,   "#78849B"_L1 },
    { "@WN_THUMB"_L1,                "#3D141923"_L1, "#3DFFFFFF"_L1 },

    // Marks of the three file kinds.
    { "@FILE_SCHEMATIC"_L1,          "#D83B36"_L1,   "#E04B45"_L1 },
    { "@FILE_BOARD"_L1,              "#1F8A5B"_L1,   "#33AB78"_L1 },
    { "@FILE_HARDWARE"_L1,           "#3566C9"_L1,   "#5F8FEC"_L1 },

    // Home screen panel: recent files and their progress track.
    { "@HS_PANEL"_L1,                "#FFFFFF"_L1,   "#1A1D23"_L1 },
    { "@HS_HOVER"_L1,                "#F1F4F9"_L1,   "#242830"_L1 },
    { "@HS_TEXT"_L1,                 "#171C26"_L1,   "#ECEFF4"_L1 },
    { "@HS_TEXT_MUTED"_L1,           "#68717F"_L1,   "#97A0AF"_L1 },
    { "@HS_BORDER"_L1,               "#E1E6ED"_L1,   "#313741"_L1 },
    { "@HS_TRACK"_L1,                "#E6EAF1"_L1,   "#2A2F38"_L1 },

    // On/off switches; the thumb stands out from the track, so that it is found without colour.
    { "@SWITCH_TRACK"_L1,            "#838D9C"_L1,   "#4A5468"_L1 },
    { "@SWITCH_THUMB"_L1,            "#FFFFFF"_L1,   "#F1F4F9"_L1 },

    // Loader card: the name of what is being loaded, or why it could not be.
    { "@LOADER_CARD"_L1,             "#FFFFFF"_L1,   "#171B24"_L1 },
    { "@LOADER_EDGE"_L1,             "#DDE3EC"_L1,   "#2B3342"_L1 },
    { "@LOADER_INK"_L1,              "#141A24"_L1,   "#EEF2F9"_L1 },
    { "@LOADER_DIM"_L1,              "#667080"_L1,   "#97A3B8"_L1 },
    { "@LOADER_DANGER"_L1,           "#CF2A35"_L1,   "#FF6B6B"_L1 },

    // Plain tool tips.
    { "@TOOLTIP_BG"_L1,              "#F4F7FF"_L1,   "#16223F"_L1 },
    { "@TOOLTIP_TEXT"_L1,            "#1B2A52"_L1,   "#E4EBFF"_L1 },
    { "@TOOLTIP_BORDER"_L1,          "#C3D0F2"_L1,   "#2E4272"_L1 },

    // Part tool tips: rows of label, value and unit.
    { "@TTIP_SURFACE"_L1,            "#FFFFFF"_L1,   "#1B1F27"_L1 },
    { "@TTIP_EDGE"_L1,               "#D6DDE7"_L1,   "#353D4B"_L1 },
    { "@TTIP_DIVIDER"_L1,            "#E8ECF2"_L1,   "#2A313D"_L1 },
    { "@TTIP_INK"_L1,                "#151B26"_L1,   "#EEF1F7"_L1 },
    { "@TTIP_LABEL"_L1,              "#5F6979"_L1,   "#9AA5B8"_L1 },
    { "@TTIP_UNIT"_L1,               "#788292"_L1,   "#828EA3"_L1 },

    // Login: card, fields, main and ghost buttons, hints and the account list.
    { "@LGN_SURFACE"_L1,             "#FFFFFF"_L1,   "#121725"_L1 },
    { "@LGN_EDGE"_L1,                "#DFE5F0"_L1,   "#262F45"_L1 },
    { "@LGN_INK"_L1,                 "#141A2B"_L1,   "#EDF1FB"_L1 },
    { "@LGN_INK_SOFT"_L1,            "#5A657B"_L1,   "#9EABC8"_L1 },
    { "@LGN_FIELD"_L1,               "#F7F9FD"_L1,   "#1A2133"_L1 },
    { "@LGN_FIELD_EDGE"_L1,          "#CDD5E4"_L1,   "#36415C"_L1 },
    { "@LGN_FIELD_EDGE_HOVER"_L1,    "#A9B5CC"_L1,   "#4C5A7C"_L1 },
    { "@LGN_FIELD_FOCUS"_L1,         "#4A67E0"_L1,   "#7391FA"_L1 },
    { "@LGN_ACCENT"_L1,              "#2E4BC7"_L1,   "#8AA6FF"_L1 },
    { "@LGN_ACCENT_STRONG"_L1,       "#233BA6"_L1,   "#A9BEFF"_L1 },
    { "@LGN_ACCENT_SOFT"_L1,         "#E8EDFD"_L1,   "#1D2A52"_L1 },
    { "@LGN_BTN_TOP"_L1,             "#3D5BDB"_L1,   "#4662E0"_L1 },
    { "@LGN_BTN_BOTTOM"_L1,          "#2E4BC7"_L1,   "#3650CC"_L1 },
    { "@LGN_BTN_TOP_HOVER"_L1,       "#4865E2"_L1,   "#4F6AE6"_L1 },
    { "@LGN_BTN_BOTTOM_HOVER"_L1,    "#3754D1"_L1,   "#405AD6"_L1 },
    { "@LGN_GHOST"_L1,               "#F4F6FB"_L1,   "#1A2133"_L1 },
    { "@LGN_GHOST_HOVER"_L1,         "#E9EDF7"_L1,   "#232C42"_L1 },
    { "@LGN_GHOST_EDGE"_L1,          "#CFD7E6"_L1,   "#38435F"_L1 },
    { "@LGN_DANGER"_L1,              "#CD2638"_L1,   "#FF6B78"_L1 },
    { "@LGN_DANGER_SOFT"_L1,         "#FDECEE"_L1,   "#3A1820"_L1 },
    { "@LGN_WARN"_L1,                "#946010"_L1,   "#E0A648"_L1 },
    { "@LGN_DISABLED"_L1,            "#E4E8F0"_L1,   "#262D3F"_L1 },
    { "@LGN_DISABLED_INK"_L1,        "#79839A"_L1,   "#78849E"_L1 },
    { "@LGN_HINT_INK"_L1,            "#2A3F8F"_L1,   "#B9C8FF"_L1 },
    { "@LGN_HINT_BG"_L1,             "#EEF2FF"_L1,   "#18213F"_L1 },
    { "@LGN_HINT_EDGE"_L1,           "#C8D4F7"_L1,   "#2F3F72"_L1 },
    { "@LGN_POPUP"_L1,               "#FFFFFF"_L1,   "#182033"_L1 },
    { "@LGN_POPUP_EDGE"_L1,          "#D5DCE9"_L1,   "#303B56"_L1 },
    { "@LGN_POPUP_HOVER"_L1,         "#EEF2FB"_L1,   "#232D47"_L1 },

    // Selection panel: built like an instrument, panels and wells let into a chassis.
    { "@SLN_CHASSIS"_L1,             "#E9EDF3"_L1,   "#14181F"_L1 },
    { "@SLN_CHASSIS_2"_L1,           "#DFE5ED"_L1,   "#0F1319"_L1 },
    { "@SLN_PANEL"_L1,               "#F8FAFC"_L1,   "#1B2029"_L1 },
    { "@SLN_WELL"_L1,                "#FFFFFF"_L1,   "#0D1016"_L1 },
    { "@SLN_LINE"_L1,                "#CBD3DE"_L1,   "#353D4A"_L1 },
    { "@SLN_LINE_SOFT"_L1,           "#DEE4EC"_L1,   "#272E39"_L1 },
    { "@SLN_INK"_L1,                 "#161C26"_L1,   "#EBEFF5"_L1 },
    { "@SLN_INK_2"_L1,               "#4F5A69"_L1,   "#A9B3C2"_L1 },
    { "@SLN_INK_3"_L1,               "#6F7A8A"_L1,   "#7F8A9A"_L1 },
    { "@SLN_ACCENT"_L1,              "#2E4BC7"_L1,   "#8AA6FF"_L1 },
    { "@SLN_ACCENT_INK"_L1,          "#FFFFFF"_L1,   "#0D1430"_L1 },
    { "@SLN_ACCENT_WASH"_L1,         "#142E4BC7"_L1, "#1F8AA6FF"_L1 },
    { "@SLN_ACCENT_LINE"_L1,         "#592E4BC7"_L1, "#668AA6FF"_L1 },
    { "@SLN_HOVER"_L1,               "#0D141923"_L1, "#0FFFFFFF"_L1 },
    { "@SLN_BEVEL"_L1,               "#A6FFFFFF"_L1, "#14FFFFFF"_L1 },
    { "@SLN_DOT_RING"_L1,            "#33141923"_L1, "#40FFFFFF"_L1 },
    { "@SLN_GRID"_L1,                "#0F141923"_L1, "#0DFFFFFF"_L1 },

    // Report panel: findings of a design check, with the tokens they quote.
    { "@RPN_SURFACE"_L1,             "#FFFFFF"_L1,   "#181B20"_L1 },
    { "@RPN_HEAD"_L1,                "#F3F5F8"_L1,   "#20242B"_L1 },
    { "@RPN_EDGE"_L1,                "#DCE1E8"_L1,   "#333944"_L1 },
    { "@RPN_TITLE"_L1,               "#151A22"_L1,   "#F0F2F6"_L1 },
    { "@RPN_TEXT"_L1,                "#3B4451"_L1,   "#C9D0DA"_L1 },
    { "@RPN_TOK"_L1,                 "#2A4FB8"_L1,   "#9DB4FF"_L1 },
    { "@RPN_MUTED"_L1,               "#6D7684"_L1,   "#8F99A8"_L1 },
    { "@RPN_CHECK"_L1,               "#17835A"_L1,   "#35C088"_L1 },
    { "@RPN_HOVER"_L1,               "#0F2E4BC7"_L1, "#148AA6FF"_L1 },

    // Chooser: raised keys in the slots of a shell, etched legends, and the key for "all".
    { "@CHR_SHELL"_L1,               "#E4E8EE"_L1,   "#20252D"_L1 },
    { "@CHR_SHELL_HI"_L1,            "#F2F4F7"_L1,   "#2C323C"_L1 },
    { "@CHR_SHELL_LO"_L1,            "#D3D9E2"_L1,   "#161A20"_L1 },
    { "@CHR_SLOT"_L1,                "#D8DEE7"_L1,   "#101318"_L1 },
    { "@CHR_KEY"_L1,                 "#F1F3F6"_L1,   "#2F3743"_L1 },
    { "@CHR_KEY_HI"_L1,              "#FDFDFE"_L1,   "#3B4451"_L1 },
    { "@CHR_KEY_HOVER_HI"_L1,        "#F5F8FF"_L1,   "#434E66"_L1 },
    { "@CHR_KEY_HOVER_LO"_L1,        "#E4EBFA"_L1,   "#333D52"_L1 },
    { "@CHR_ETCH"_L1,                "#4D5767"_L1,   "#AAB4C2"_L1 },
    { "@CHR_ETCH_DIM"_L1,            "#6E7888"_L1,   "#828C9A"_L1 },
    { "@CHR_KEY_INK"_L1,             "#1A212C"_L1,   "#EAEEF4"_L1 },
    { "@CHR_ALL_TOP"_L1,             "#3D5BDB"_L1,   "#93AEFF"_L1 },
    { "@CHR_ALL_BOT"_L1,             "#2E4BC7"_L1,   "#7896F5"_L1 },
    { "@CHR_ALL_INK"_L1,             "#FFFFFF"_L1,   "#0D1430"_L1 },

    // Header band: project line, links, the action button, and signal, good and bad chips.
    { "@HDR_SURFACE"_L1,             "#FFFFFF"_L1,   "#161A1F"_L1 },
    { "@HDR_BAND"_L1,                "#F4F6F8"_L1,   "#0F1216"_L1 },
    { "@HDR_INK"_L1,                 "#0F1419"_L1,   "#E9EDF2"_L1 },
    { "@HDR_STEEL"_L1,               "#55606D"_L1,   "#A0ABB8"_L1 },
    { "@HDR_FAINT"_L1,               "#7B8592"_L1,   "#76818E"_L1 },
    { "@HDR_HAIRLINE"_L1,            "#E6EAEE"_L1,   "#252B32"_L1 },
    { "@HDR_EDGE"_L1,                "#D3D9E0"_L1,   "#363E48"_L1 },
    { "@HDR_TRACK"_L1,               "#E9EDF1"_L1,   "#272E36"_L1 },
    { "@HDR_LINK"_L1,                "#064CAD"_L1,   "#8AA6FF"_L1 },
    { "@HDR_ACTION"_L1,              "#064CAD"_L1,   "#8AA6FF"_L1 },
    { "@HDR_ACTION_INK"_L1,          "#FFFFFF"_L1,   "#0D1430"_L1 },
    { "@HDR_SIGNAL"_L1,              "#8F5D0E"_L1,   "#E0A64A"_L1 },
    { "@HDR_SIGNAL_BG"_L1,           "#FDF4E2"_L1,   "#2D2312"_L1 },
    { "@HDR_SIGNAL_LINE"_L1,         "#EBD3A3"_L1,   "#57431D"_L1 },
    { "@HDR_OK"_L1,                  "#15754E"_L1,   "#3CC48C"_L1 },
    { "@HDR_OK_BG"_L1,               "#E6F5ED"_L1,   "#10291E"_L1 },
    { "@HDR_OK_LINE"_L1,             "#B5DFC9"_L1,   "#1F4F3A"_L1 },
    { "@HDR_BAD"_L1,                 "#C4262E"_L1,   "#FF6F6F"_L1 },
    { "@HDR_BAD_BG"_L1,              "#FDEBEC"_L1,   "#331618"_L1 },
    { "@HDR_BAD_LINE"_L1,            "#F3BFC2"_L1,   "#5E282B"_L1 },
    { "@HDR_SCRIM"_L1,               "#1A0F1419"_L1, "#73000000"_L1 },

    // Set-up wizard: all that its own widgets read.
    { "@INS_BG"_L1,                  "#FFFFFF"_L1,   "#101521"_L1 },
    { "@INS_PANEL"_L1,               "#F6F8FB"_L1,   "#182031"_L1 },
    { "@INS_RAIL"_L1,                "#EFF3F9"_L1,   "#0C1019"_L1 },
    { "@INS_LINE"_L1,                "#E3E8EF"_L1,   "#242C3E"_L1 },
    { "@INS_LINE2"_L1,               "#C5CEDB"_L1,   "#37425A"_L1 },
    { "@INS_TX"_L1,                  "#131923"_L1,   "#EDF1FA"_L1 },
    { "@INS_TX2"_L1,                 "#586371"_L1,   "#9DAAC6"_L1 },
    { "@INS_TX3"_L1,                 "#8A94A2"_L1,   "#6B7890"_L1 },
    { "@INS_ACCENT"_L1,              "#064CAD"_L1,   "#8AA6FF"_L1 },
    { "@INS_ACCENT_HOVER"_L1,        "#0A5EC9"_L1,   "#A5BBFF"_L1 },
    { "@INS_RED"_L1,                 "#FF3131"_L1,   "#FF5C5C"_L1 },
    { "@INS_OK"_L1,                  "#1F9D63"_L1,   "#34C084"_L1 },
    { "@INS_WARN"_L1,                "#B0781A"_L1,   "#D99A3A"_L1 },
    { "@INS_SEAL_BG"_L1,             "#E3F4EA"_L1,   "#123322"_L1 },

    // RF front-end editor: a dotted bench, modules with lamps, and each lamp's glow.
    { "@RFFE_BG"_L1,                 "#EEF1F5"_L1,   "#0D1014"_L1 },
    { "@RFFE_BACKDROP_DOT"_L1,       "#CFD6DF"_L1,   "#252B34"_L1 },
    { "@RFFE_SURFACE"_L1,            "#F9FAFC"_L1,   "#161A20"_L1 },
    { "@RFFE_SURFACE_RAISED"_L1,     "#FFFFFF"_L1,   "#1F242C"_L1 },
    { "@RFFE_SURFACE_SUNKEN"_L1,     "#E6EAF0"_L1,   "#090B0E"_L1 },
    { "@RFFE_BORDER"_L1,             "#CBD2DC"_L1,   "#373F4B"_L1 },
    { "@RFFE_BORDER_SOFT"_L1,        "#DFE4EB"_L1,   "#272D36"_L1 },
    { "@RFFE_TEXT"_L1,               "#131820"_L1,   "#ECEFF4"_L1 },
    { "@RFFE_TEXT_DIM"_L1,           "#4E5866"_L1,   "#A6B0BE"_L1 },
    { "@RFFE_TEXT_FAINT"_L1,         "#717B8A"_L1,   "#7D8897"_L1 },
    { "@RFFE_BRAND_RED"_L1,          "#D83B36"_L1,   "#E04B45"_L1 },
    { "@RFFE_ACCENT"_L1,             "#2E4BC7"_L1,   "#8AA6FF"_L1 },
    { "@RFFE_ACCENT_STRONG"_L1,      "#233BA6"_L1,   "#A9BEFF"_L1 },
    { "@RFFE_ACCENT_INK"_L1,         "#FFFFFF"_L1,   "#0D1430"_L1 },
    { "@RFFE_ON_INK"_L1,             "#FFFFFF"_L1,   "#06180F"_L1 },
    { "@RFFE_LED_ON"_L1,             "#17835A"_L1,   "#35C088"_L1 },
    { "@RFFE_LED_ON_GLOW"_L1,        "#4D17835A"_L1, "#7335C088"_L1 },
    { "@RFFE_LED_OFF"_L1,            "#B4BCC8"_L1,   "#3B434F"_L1 },
    { "@RFFE_LED_DANGER"_L1,         "#DE2A33"_L1,   "#FF5C5C"_L1 },
    { "@RFFE_LED_DANGER_GLOW"_L1,    "#4DDE2A33"_L1, "#73FF5C5C"_L1 },
    { "@RFFE_LED_SCAN"_L1,           "#B0781A"_L1,   "#F0B64A"_L1 },
    { "@RFFE_LED_SCAN_GLOW"_L1,      "#4DB0781A"_L1, "#73F0B64A"_L1 },
    { "@RFFE_FOCUS_RING"_L1,         "#4A67E0"_L1,   "#7391FA"_L1 },
    { "@RFFE_SHADOW_INSET"_L1,       "#1F141923"_L1, "#8C000000"_L1 },
    { "@RFFE_SHADOW_AMBIENT"_L1,     "#14141923"_L1, "#66000000"_L1 },
    { "@RFFE_SHADOW_CONTACT"_L1,     "#2E141923"_L1, "#99000000"_L1 },
};
// clang-format on

static_assert(std::size(kTokens) == kTokenCount, "a family has lost or gained a token");

} // namespace

std::span<const ThemeToken> themeTokens()
{
    return kTokens;
}
