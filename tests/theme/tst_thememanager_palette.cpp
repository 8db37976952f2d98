#include "theme/thememanager.h"

#include <QApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QTest>

namespace {

const QColor kUntouched(0xAB, 0x12, 0xCD);

struct PaletteRow
{
    const char *name;
    QPalette::ColorRole role;
    const char *light;
    const char *dark;
};

constexpr PaletteRow kPalette[] = {
    { "WindowText", QPalette::WindowText, "#111827", "#F3F4F6" },
    { "Text", QPalette::Text, "#111827", "#F3F4F6" },
    { "ButtonText", QPalette::ButtonText, "#111827", "#F3F4F6" },
    { "Base", QPalette::Base, "#FFFFFF", "#1E1E1E" },
    { "Window", QPalette::Window, "#F5F6F8", "#121212" },
    { "AlternateBase", QPalette::AlternateBase, "#F9FAFB", "#2D2D2D" },
    { "Button", QPalette::Button, "#FFFFFF", "#1E1E1E" },
    { "Light", QPalette::Light, "#FFFFFF", "#374151" },
    { "Midlight", QPalette::Midlight, "#F3F4F6", "#2D2D2D" },
    { "Mid", QPalette::Mid, "#9CA3AF", "#4B5563" },
    { "Dark", QPalette::Dark, "#6B7280", "#6B7280" },
    { "Shadow", QPalette::Shadow, "#374151", "#111827" },
    { "Highlight", QPalette::Highlight, "#3B5CD8", "#4D74F8" },
    { "HighlightedText", QPalette::HighlightedText, "#FFFFFF", "#FFFFFF" },
};

constexpr std::pair<const char *, QPalette::ColorGroup> kGroups[] = {
    { "active", QPalette::Active },
    { "inactive", QPalette::Inactive },
    { "disabled", QPalette::Disabled },
};

} // namespace

class TestThemeManagerPalette : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void roles_data();
    void roles();
    void otherRolesStay();
};

void TestThemeManagerPalette::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QPalette palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        palette.setBrush(QPalette::ColorRole(role), kUntouched);
    QApplication::setPalette(palette);
}

void TestThemeManagerPalette::roles_data()
{
    QTest::addColumn<ThemeManager::Theme>("theme");
    QTest::addColumn<QPalette::ColorGroup>("group");
    QTest::addColumn<QPalette::ColorRole>("role");
    QTest::addColumn<QString>("colour");
    for (const PaletteRow &row : kPalette) {
        for (const auto &[name, group] : kGroups) {
            QTest::addRow("light, %s, %s", name, row.name)
                << ThemeManager::Light << group << row.role << QString::fromLatin1(row.light);
            QTest::addRow("dark, %s, %s", name, row.name)
                << ThemeManager::Dark << group << row.role << QString::fromLatin1(row.dark);
        }
    }
}

void TestThemeManagerPalette::roles()
{
    QFETCH(const ThemeManager::Theme, theme);
    QFETCH(const QPalette::ColorGroup, group);
    QFETCH(const QPalette::ColorRole, role);
    QFETCH(const QString, colour);
    ThemeManager::instance().setTheme(theme);
    QCOMPARE(QApplication::palette().brush(group, role), QBrush(QColor(colour), Qt::SolidPattern));
}

void TestThemeManagerPalette::otherRolesStay()
{
    ThemeManager::instance().setTheme(ThemeManager::Dark);
    const QPalette palette = QApplication::palette();
    for (const auto &[name, group] : kGroups) {
        for (const auto role :
             { QPalette::BrightText, QPalette::Link, QPalette::LinkVisited, QPalette::ToolTipBase,
               QPalette::ToolTipText, QPalette::PlaceholderText })
            QVERIFY2(palette.color(group, role) == kUntouched, name);
    }
}

QTEST_MAIN(TestThemeManagerPalette)
#include "tst_thememanager_palette.moc"
