#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/// Knows which theme is current and what colour every token has in it. One object for the process;
/// widgets ask it when they paint or build their style sheets, and again on themeChanged().
///
/// The main application shares this class, its tokens and base_theme.qss; switching the theme,
/// choosing a primary colour and styling the whole application are there for it. The wizard itself
/// only calls setDarkMode(false) at start-up and reads the "@INS_" tokens. Its widgets follow the
/// dark theme all the same, which tools/gallery shows.
class ThemeManager : public QObject
{
    Q_OBJECT

public:
    enum Theme : int { Light = 0, Dark = 1 };
    Q_ENUM(Theme)

    [[nodiscard]] static ThemeManager &instance();

    [[nodiscard]] Theme theme() const { return m_theme; }

    /// Switches the theme and styles the application anew.
    void setTheme(Theme theme);
    /// Switches the theme without styling the application: only widgets that ask for their colours
    /// change.
    void setDarkMode(bool dark);
    /// Gives the three primary tokens the colour text `hex`, until the theme is switched.
    void setPrimaryColor(const QString &hex);

    /// Colour text of `token` ("#RRGGBB", or "#AARRGGBB" if translucent); empty for no known token.
    [[nodiscard]] QString color(const QString &token) const;
    /// `text` with the colour in place of every token in it. An unknown word with "@" stays.
    [[nodiscard]] QString resolve(const QString &text) const;

    /// Makes the resolved base style sheet and the matching palette the application's. Warns and
    /// changes nothing if the sheet or the application is missing.
    void applyStyleSheet();

Q_SIGNALS:
    /// Each time a theme is set, also if it is the current one. color() gives the new colours by
    /// then.
    void themeChanged(ThemeManager::Theme newTheme);
    /// Each time the primary colour is set.
    void primaryColorChanged(const QString &hexColor);

private:
    using TokenTable = QMap<QString, QString>;

    ThemeManager();
    void useTheme(Theme theme);

    Theme m_theme = Light;
    TokenTable m_current; ///< shares one of the two source tables until a primary colour is set
    TokenTable m_light;
    TokenTable m_dark;
};
