#pragma once

#include <QApplication>
#include <QFont>
#include <QTest>

/// A column "font": the default fonts of several desktops.
inline void addDesktopFonts()
{
    QTest::addColumn<QFont>("font");
    QFont font = QApplication::font();
    QTest::newRow("as here") << font;
    font.setPointSize(11);
    QTest::newRow("11 pt") << font;
    font.setPixelSize(20);
    QTest::newRow("20 px") << font;
}

/// Makes `font` the application's default for as long as it lives.
class DesktopFont
{
public:
    explicit DesktopFont(const QFont &font) { QApplication::setFont(font); }
    ~DesktopFont() { QApplication::setFont(m_before); }

private:
    QFont m_before = QApplication::font();
};
