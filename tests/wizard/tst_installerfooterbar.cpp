#include "app/applicationfonts.h"
#include "pages/desktopfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/contrast.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "wizard/installerfooterbar.h"
#include "wizard/onscreen.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 680;

QString ghostStyle()
{
    return coloured(
        u"QPushButton{padding:0 14px;border-radius:8px;background:%1;"
        "border:1px solid %2;color:%3;}"
        "QPushButton:hover{background:%4;border-color:%5;}"
        "QPushButton:disabled{color:%5;}"_s,
        { u"@INS_BG"_s, u"@INS_LINE2"_s, u"@INS_TX"_s, u"@INS_PANEL"_s, u"@INS_TX3"_s });
}

QString primaryStyle()
{
    return coloured(u"QPushButton{padding:0 18px;border-radius:8px;font-weight:600;background:%1;"
                    "border:1px solid %1;color:#FFFFFF;}"
                    "QPushButton:hover{background:%2;border-color:%2;}"
                    "QPushButton:disabled{background:%3;border-color:%3;color:%4;}"_s,
                    { u"@INS_ACCENT"_s, u"@INS_ACCENT_HOVER"_s, u"@INS_LINE2"_s, u"@INS_TX3"_s });
}

QString dangerStyle()
{
    return coloured(u"QPushButton{padding:0 18px;border-radius:8px;font-weight:600;background:%1;"
                    "border:1px solid %1;color:#FFFFFF;}"
                    "QPushButton:disabled{background:%2;border-color:%2;color:%3;}"_s,
                    { u"@INS_RED"_s, u"@INS_LINE2"_s, u"@INS_TX3"_s });
}

QString styleOf(const QString &variant)
{
    return variant == "danger"_L1 ? dangerStyle()
        : variant == "primary"_L1 ? primaryStyle()
                                  : ghostStyle();
}

} // namespace

class TestInstallerFooterBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void statusLabel();
    void statusHasASizeOfItsOwn_data() { addDesktopFonts(); }
    void statusHasASizeOfItsOwn();
    void statusIsLiteral();
    void variants_data();
    void variants();
    void variantIsReadAgain();
    void focusStandsOutFromEveryVariant_data();
    void focusStandsOutFromEveryVariant();
    void buttonsStandSideBySide();
    void clearRemovesTheButtonsAndKeepsTheText();
    void clearFromWithinAClick();
    void clearTwice();
    void painting_data();
    void painting();
    void themeChangeRepaints();
};

void TestInstallerFooterBar::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerFooterBar::layout()
{
    InstallerFooterBar bar;
    QCOMPARE(bar.minimumHeight(), 48);
    QCOMPARE(bar.maximumHeight(), 48);
    bar.setStatusText(u"Where we are"_s);
    bar.addButton(u"Back"_s, false, false);
    bar.addButton(u"Next"_s, true, false);
    const QStringList outline = layoutOutline(&bar);
    QVERIFY(outline.first().startsWith(u"margins 18 0 18 0"_s));
    QCOMPARE(outline.sliced(1),
             (QStringList { u"label: Where we are"_s, u"stretch"_s, u"row, spacing 8"_s,
                            u"  button: Back"_s, u"  button: Next"_s }));
}

void TestInstallerFooterBar::statusLabel()
{
    InstallerFooterBar bar;
    QVERIFY(bar.statusText().isEmpty());
    bar.setStatusText(u"Optional — safe to skip"_s);
    QCOMPARE(bar.statusText(), u"Optional — safe to skip"_s);
    const auto *label = bar.findChild<QLabel *>();
    QCOMPARE(label->text(), u"Optional — safe to skip"_s);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(label->styleSheet(), coloured(u"color:%1;font-size:11.5px;"_s, { u"@INS_TX3"_s }));
    }
}

// Of fractions of a pixel, as in its style sheet, the style sheet makes nothing.
void TestInstallerFooterBar::statusHasASizeOfItsOwn()
{
    QFETCH(const QFont, font);
    InstallerFooterBar before;
    const DesktopFont desktop(font);
    InstallerFooterBar after;
    for (InstallerFooterBar *bar : { &before, &after }) {
        bar->resize(kWidth, 48);
        bar->setStatusText(u"Recommended — includes performance fixes"_s);
        bar->addButton(u"Close"_s, false, false);
        bar->addButton(u"Open Varnel Schematics"_s, true, false);
        bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(bar));
        QVERIFY(isWholeAt(bar->findChild<QLabel *>(), 12));
    }
}

void TestInstallerFooterBar::statusIsLiteral()
{
    InstallerFooterBar bar;
    bar.setStatusText(kLiteral);
    QCOMPARE(bar.statusText(), kLiteral);
    QCOMPARE(bar.findChild<QLabel *>()->textFormat(), Qt::PlainText);
}

void TestInstallerFooterBar::variants_data()
{
    QTest::addColumn<bool>("primary");
    QTest::addColumn<bool>("danger");
    QTest::addColumn<QString>("variant");
    QTest::newRow("ghost") << false << false << u"ghost"_s;
    QTest::newRow("primary") << true << false << u"primary"_s;
    QTest::newRow("danger") << false << true << u"danger"_s;
    QTest::newRow("danger wins over primary") << true << true << u"danger"_s;
}

void TestInstallerFooterBar::variants()
{
    QFETCH(bool, primary);
    QFETCH(bool, danger);
    QFETCH(QString, variant);
    InstallerFooterBar bar;
    QPushButton *button = bar.addButton(u"Press me"_s, primary, danger);
    QCOMPARE(button->text(), u"Press me"_s);
    QCOMPARE(button->parentWidget(), &bar);
    QCOMPARE(button->property("insVariant").toString(), variant);
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button->minimumHeight(), 30);
    QCOMPARE(button->maximumHeight(), 30);
    QVERIFY(button->isEnabled());
    QCOMPARE(bar.buttons(), QList<QPushButton *> { button });
    for (bool dark : { false, true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(button->styleSheet(), styleOf(variant));
    }
}

void TestInstallerFooterBar::variantIsReadAgain()
{
    InstallerFooterBar bar;
    QPushButton *button = bar.addButton(u"Press me"_s, true, false);
    button->setProperty("insVariant", u"danger"_s);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(button->styleSheet(), dangerStyle());
}

void TestInstallerFooterBar::focusStandsOutFromEveryVariant_data()
{
    variants_data();
}

void TestInstallerFooterBar::focusStandsOutFromEveryVariant()
{
    QFETCH(bool, primary);
    QFETCH(bool, danger);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        InstallerFooterBar bar;
        bar.resize(kWidth, 48);
        QPushButton *button = bar.addButton(u"Press me"_s, primary, danger);
        bar.show();
        QVERIFY(QTest::qWaitForWindowActive(&bar));
        button->clearFocus(); // the only button of the window has been given it
        const QPointF onTheRing(button->width() / 2.0, 2.75);
        const QColor before = colourAt(grabWidget(*button, 2.0), onTheRing);
        button->setFocus(Qt::TabFocusReason);
        const QColor after = colourAt(grabWidget(*button, 2.0), onTheRing);
        // 3 : 1 is what readers with weak eyes need for a sign that is not text.
        QVERIFY2(contrast(before, after) >= 3.0, qPrintable(before.name() + after.name()));
    }
}

void TestInstallerFooterBar::buttonsStandSideBySide()
{
    InstallerFooterBar bar;
    bar.resize(kWidth, 48);
    bar.show();
    QPushButton *back = bar.addButton(u"Back"_s, false, false);
    QPushButton *next = bar.addButton(u"Next"_s, true, false);
    QCOMPARE(bar.buttons(), (QList<QPushButton *> { back, next }));
    QTRY_VERIFY(back->isVisible() && next->isVisible());
    QCOMPARE(next->geometry().right(), kWidth - 18 - 1);
    QCOMPARE(next->x() - (back->x() + back->width()), 8);
    QCOMPARE(back->y(), 9);
    QCOMPARE(next->y(), 9);
    QCOMPARE(bar.findChild<QLabel *>()->x(), 18);
}

void TestInstallerFooterBar::clearRemovesTheButtonsAndKeepsTheText()
{
    InstallerFooterBar bar;
    bar.resize(kWidth, 48);
    bar.show();
    bar.setStatusText(u"Where we are"_s);
    const QPointer<QPushButton> back = bar.addButton(u"Back"_s, false, false);
    const QPointer<QPushButton> next = bar.addButton(u"Next"_s, true, false);
    bar.clear();
    QVERIFY(bar.buttons().isEmpty());
    for (const QPointer<QPushButton> &button : { back, next })
        QVERIFY(!button || button->isHidden());
    QCOMPARE(bar.statusText(), u"Where we are"_s);

    QPushButton *close = bar.addButton(u"Close"_s, true, true);
    QCOMPARE(bar.buttons(), QList<QPushButton *> { close });
    QTRY_COMPARE(close->geometry().right(), kWidth - 18 - 1);
    QCOMPARE(bar.statusText(), u"Where we are"_s);
    QTRY_VERIFY(!back && !next);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(close->styleSheet(), dangerStyle());
    QCOMPARE(bar.findChildren<QPushButton *>().size(), 1);
}

void TestInstallerFooterBar::clearFromWithinAClick()
{
    InstallerFooterBar bar;
    bar.resize(kWidth, 48);
    bar.show();
    const QPointer<QPushButton> next = bar.addButton(u"Next"_s, true, false);
    QSignalSpy clicks(next.data(), &QPushButton::clicked);
    connect(next, &QPushButton::clicked, &bar, [&] {
        bar.clear();
        bar.addButton(u"Close"_s, false, false);
    });
    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(bar.buttons().size(), 1);
    QCOMPARE(bar.buttons().first()->text(), u"Close"_s);
    QTRY_VERIFY(!next);
}

void TestInstallerFooterBar::clearTwice()
{
    InstallerFooterBar bar;
    bar.clear();
    const QPointer<QPushButton> next = bar.addButton(u"Next"_s, true, false);
    bar.clear();
    bar.clear();
    QVERIFY(bar.buttons().isEmpty());
    QTRY_VERIFY(!next);
}

void TestInstallerFooterBar::painting_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (double ratio : { 1.0, 2.0 }) {
        QTest::addRow("light, ratio %g", ratio) << false << ratio;
        QTest::addRow("dark, ratio %g", ratio) << true << ratio;
    }
}

void TestInstallerFooterBar::painting()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    InstallerFooterBar bar;
    bar.resize(kWidth, 48);
    const QImage picture = grabWidget(bar, ratio);
    const QColor panel = themedColor(u"@INS_PANEL"_s);
    const QColor line = themedColor(u"@INS_LINE"_s);

    // The hairline goes all the way, and the upper corners are square.
    for (double x : { 0.3, kWidth / 2.0, kWidth - 0.3 })
        QCOMPARE(colourAt(picture, { x, 1.2 }), panel);
    for (double anyRatio : kScreenRatios)
        QVERIFY(hasHairline(grabWidget(bar, anyRatio), Qt::TopEdge, line));
    // Both lower corners are rounded by 11 px.
    for (double x : { 0.3, 2.0 }) {
        QCOMPARE(colourAt(picture, { x, 47.7 - x }).alpha(), 0);
        QCOMPARE(colourAt(picture, { kWidth - x - 0.3, 47.7 - x }).alpha(), 0);
    }
    QCOMPARE(colourAt(picture, { 4.5, 43.0 }), panel);
    QCOMPARE(colourAt(picture, { kWidth - 5.0, 43.0 }), panel);
    QCOMPARE(colourAt(picture, { 11.5, 47.6 }), panel);
    QCOMPARE(colourAt(picture, { 0.3, 36.3 }), panel);
}

void TestInstallerFooterBar::themeChangeRepaints()
{
    InstallerFooterBar bar;
    bar.resize(kWidth, 48);
    QVERIFY(repaintsOnThemeChange(bar, { 4.5, 20 }, u"@INS_PANEL"_s));
}

QTEST_MAIN(TestInstallerFooterBar)
#include "tst_installerfooterbar.moc"
