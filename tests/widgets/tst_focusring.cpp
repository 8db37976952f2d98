#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/focusring.h"
#include "widgets/look.h"

#include <QFocusEvent>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRectF kRect(10, 10, 80, 40);

QImage picture(const FocusRing &ring, double radius, double ratio = 1.0)
{
    QImage picture((QSizeF(100, 60) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::red); // what the control painted last
    ring.paint(painter, kRect, radius, u"@INS_ACCENT"_s);
    return picture;
}

bool isSeen(const FocusRing &ring)
{
    return pixelsUnlike(picture(ring, 8.0), Qt::transparent) > 0;
}

FocusRing keyboardFocus()
{
    FocusRing ring;
    ring.update(QFocusEvent(QEvent::FocusIn, Qt::TabFocusReason));
    return ring;
}

} // namespace

class TestFocusRing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void notSeenAtFirst();
    void focusComes_data();
    void focusComes();
    void focusGoes_data();
    void focusGoes();
    void windowGoesAndComesBack_data();
    void windowGoesAndComesBack();
    void clickOnAControlThatHadTheKeyboard();
    void colour_data();
    void colour();
    void liesJustInside();
    void corners();
};

void TestFocusRing::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestFocusRing::notSeenAtFirst()
{
    QVERIFY(!isSeen(FocusRing()));
}

void TestFocusRing::focusComes_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::addColumn<bool>("seen");
    QTest::newRow("tab") << Qt::TabFocusReason << true;
    QTest::newRow("back tab") << Qt::BacktabFocusReason << true;
    QTest::newRow("shortcut") << Qt::ShortcutFocusReason << true;
    QTest::newRow("click") << Qt::MouseFocusReason << false;
    QTest::newRow("by the program") << Qt::OtherFocusReason << false;
    QTest::newRow("menu bar") << Qt::MenuBarFocusReason << false;
    QTest::newRow("window") << Qt::ActiveWindowFocusReason << false;
    QTest::newRow("popup") << Qt::PopupFocusReason << false;
}

void TestFocusRing::focusComes()
{
    QFETCH(const Qt::FocusReason, reason);
    QFETCH(const bool, seen);
    FocusRing ring;
    ring.update(QFocusEvent(QEvent::FocusIn, reason));
    QCOMPARE(isSeen(ring), seen);
}

void TestFocusRing::focusGoes_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::newRow("tab") << Qt::TabFocusReason;
    QTest::newRow("back tab") << Qt::BacktabFocusReason;
    QTest::newRow("shortcut") << Qt::ShortcutFocusReason;
    QTest::newRow("click elsewhere") << Qt::MouseFocusReason;
    QTest::newRow("by the program") << Qt::OtherFocusReason;
}

void TestFocusRing::focusGoes()
{
    QFETCH(const Qt::FocusReason, reason);
    FocusRing ring = keyboardFocus();
    QVERIFY(isSeen(ring));
    ring.update(QFocusEvent(QEvent::FocusOut, reason));
    QVERIFY(!isSeen(ring));
}

void TestFocusRing::windowGoesAndComesBack_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::newRow("window") << Qt::ActiveWindowFocusReason;
    QTest::newRow("popup") << Qt::PopupFocusReason;
}

void TestFocusRing::windowGoesAndComesBack()
{
    QFETCH(const Qt::FocusReason, reason);
    FocusRing byKeyboard = keyboardFocus();
    FocusRing byClick;
    byClick.update(QFocusEvent(QEvent::FocusIn, Qt::MouseFocusReason));
    for (FocusRing *ring : { &byKeyboard, &byClick }) {
        ring->update(QFocusEvent(QEvent::FocusOut, reason));
        ring->update(QFocusEvent(QEvent::FocusIn, reason));
    }
    QVERIFY(isSeen(byKeyboard));
    QVERIFY(!isSeen(byClick));
}

void TestFocusRing::clickOnAControlThatHadTheKeyboard()
{
    FocusRing ring = keyboardFocus();
    ring.update(QFocusEvent(QEvent::FocusOut, Qt::TabFocusReason));
    ring.update(QFocusEvent(QEvent::FocusIn, Qt::MouseFocusReason));
    QVERIFY(!isSeen(ring));
}

void TestFocusRing::colour_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestFocusRing::colour()
{
    QFETCH(const bool, dark);
    ThemeManager::instance().setDarkMode(dark);
    for (double ratio : { 1.0, 2.0 }) {
        const QImage ring = picture(keyboardFocus(), 8.0, ratio);
        QCOMPARE(difference(colourAt(ring, { 50, 10.25 }), themedColor(u"@INS_ACCENT"_s)),
                 QString());
        QCOMPARE(colourAt(ring, { 50, 30 }).alpha(), 0); // nothing inside
    }
}

void TestFocusRing::liesJustInside()
{
    // So many device pixels per pixel that the edges of the stroke lie on them.
    const QImage ring = picture(keyboardFocus(), 8.0, 8.0);
    QCOMPARE(inkRect(ring), kRect);
    QVERIFY(colourAt(ring, { 50, 11.4 }).alpha() > 250);
    QCOMPARE(colourAt(ring, { 50, 11.6 }).alpha(), 0);
    QVERIFY(colourAt(ring, { 11.4, 30 }).alpha() > 250);
    QCOMPARE(colourAt(ring, { 11.6, 30 }).alpha(), 0);
    QVERIFY(colourAt(ring, { 88.6, 30 }).alpha() > 250);
    QVERIFY(colourAt(ring, { 50, 48.6 }).alpha() > 250);
}

void TestFocusRing::corners()
{
    // On the diagonal, 0.3 of the radius away from the corner of the stroke's middle line.
    for (double radius : { 4.0, 8.0, 12.0 }) {
        const QImage ring = picture(keyboardFocus(), radius, 8.0);
        const double onStroke = 10.75 + radius * (1.0 - M_SQRT1_2);
        QVERIFY(colourAt(ring, { onStroke, onStroke }).alpha() > 250);
        QCOMPARE(colourAt(ring, { onStroke - 0.8, onStroke - 0.8 }).alpha(), 0);
        QCOMPARE(colourAt(ring, { onStroke + 0.8, onStroke + 0.8 }).alpha(), 0);
    }
    const QImage square = picture(keyboardFocus(), 0.0, 8.0);
    QVERIFY(colourAt(square, { 10.5, 10.5 }).alpha() > 200);
}

QTEST_MAIN(TestFocusRing)
#include "tst_focusring.moc"
