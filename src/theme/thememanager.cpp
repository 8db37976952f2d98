#include "theme/thememanager.h"

#include "theme/tokens.h"

#include <QApplication>
#include <QColor>
#include <QFile>
#include <QPalette>
#include <QTextStream>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr bool isTokenCharacter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_';
}

} // namespace

ThemeManager &ThemeManager::instance()
{
    static ThemeManager manager;
    return manager;
}

ThemeManager::ThemeManager()
{
    for (const ThemeToken &token : themeTokens())
        m_light.insert(token.name, token.light);
    for (const ThemeToken &token : themeTokens())
        m_dark.insert(token.name, token.dark);
    m_current = m_light;
}

void ThemeManager::useTheme(Theme theme)
{
    m_theme = theme;
    m_current = theme == Light ? m_light : m_dark;
}

void ThemeManager::setTheme(Theme theme)
{
    useTheme(theme);
    applyStyleSheet();
    Q_EMIT themeChanged(m_theme);
}

void ThemeManager::setDarkMode(bool dark)
{
    useTheme(dark ? Dark : Light);
    Q_EMIT themeChanged(m_theme);
}

void ThemeManager::setPrimaryColor(const QString &hex)
{
    for (const QString &token : { u"@PRIMARY"_s, u"@PRIMARY_HOVER"_s, u"@PRIMARY_DARK"_s })
        m_current.insert(token, hex);
    applyStyleSheet();
    Q_EMIT primaryColorChanged(hex);
}

QString ThemeManager::color(const QString &token) const
{
    return m_current.value(token);
}

QString ThemeManager::resolve(const QString &text) const
{
    QString resolved;
    resolved.reserve(text.size());
    qsizetype done = 0;
    for (qsizetype at = text.indexOf(u'@'); at >= 0; at = text.indexOf(u'@', at + 1)) {
        qsizetype end = at + 1;
        while (end < text.size() && isTokenCharacter(text[end]))
            ++end;
        // The longest name that fits counts, or "@INS_TX" would replace the front of "@INS_TX2".
        for (; end > at + 1; --end) {
            const auto token = m_current.constFind(text.sliced(at, end - at));
            if (token == m_current.constEnd())
                continue;
            resolved += QStringView(text).sliced(done, at - done) + *token;
            done = end;
            break;
        }
    }
    return resolved + QStringView(text).sliced(done);
}

void ThemeManager::applyStyleSheet()
{
    QFile file(u":/styles/base_theme.qss"_s);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning("ThemeManager: Could not open base_theme.qss from resources.");
        return;
    }
    const QString styleSheet = resolve(QTextStream(&file).readAll());
    file.close();

    auto *application = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!application) {
        qWarning("ThemeManager: QApplication instance not found.");
        return;
    }
    application->setStyleSheet(styleSheet);

    struct Role
    {
        QPalette::ColorRole role;
        QString light; ///< a colour or a token
        QString dark;
    };
    const Role roles[] = {
        { QPalette::WindowText, u"@TEXT"_s, u"@TEXT"_s },
        { QPalette::Text, u"@TEXT"_s, u"@TEXT"_s },
        { QPalette::ButtonText, u"@TEXT"_s, u"@TEXT"_s },
        { QPalette::Base, u"@CARD"_s, u"@CARD"_s },
        { QPalette::Window, u"@BACKGROUND"_s, u"@BACKGROUND"_s },
        { QPalette::AlternateBase, u"@INPUT_BG"_s, u"@INPUT_BG"_s },
        { QPalette::Button, u"@CARD"_s, u"@CARD"_s },
        { QPalette::Light, u"#FFFFFF"_s, u"#374151"_s },
        { QPalette::Midlight, u"#F3F4F6"_s, u"#2D2D2D"_s },
        { QPalette::Mid, u"#9CA3AF"_s, u"#4B5563"_s },
        { QPalette::Dark, u"#6B7280"_s, u"#6B7280"_s },
        { QPalette::Shadow, u"#374151"_s, u"#111827"_s },
        { QPalette::Highlight, u"@PRIMARY"_s, u"@PRIMARY"_s },
        { QPalette::HighlightedText, u"#FFFFFF"_s, u"#FFFFFF"_s },
    };
    QPalette palette = QApplication::palette();
    for (const Role &role : roles) {
        const QString colour = m_theme == Dark ? role.dark : role.light;
        palette.setBrush(role.role, QColor(m_current.value(colour, colour)));
    }
    QApplication::setPalette(palette);
}
