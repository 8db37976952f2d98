#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/licensepage.h"
#include "pages/licensetext.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "theme/thememanager.h"
#include "widgets/radiooption.h"

#include <QCoreApplication>
#include <QFile>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString licenseFile()
{
    return QCoreApplication::applicationDirPath() + u"/LICENSE.txt"_s;
}

void writeLicense(const QByteArray &content)
{
    QFile file(licenseFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write the licence");
}

RadioOption *option(const LicensePage &page, const QString &text)
{
    for (RadioOption *option : page.findChildren<RadioOption *>()) {
        if (option->text() == text)
            return option;
    }
    return nullptr;
}

const QString kDecline = u"I do not accept the agreement"_s;
const QString kAccept = u"I accept the license agreement"_s;

} // namespace

class TestLicensePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void cleanup() { QFile::remove(licenseFile()); }
    void layout();
    void view();
    void viewFollowsTheTheme();
    void textComesFromTheProgramsFolder();
    void textIsReadOnce();
    void viewShowsTheFocus();
    void textIsLiteral();
    void longTextScrolls();
    void isNotAcceptedAtFirst();
    void answerChangesByClick();
    void answerChangesByArrowKeys();
    void answerTakesTheFocus();
    void tellsOnlyChanges();
    void fits();
};

void TestLicensePage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestLicensePage::layout()
{
    LicensePage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: License Agreement"_s,
                 u"gap 5"_s,
                 u"label: Please read the following important information before continuing."_s,
                 u"gap 14"_s,
                 u"QPlainTextEdit"_s,
                 u"gap 12"_s,
                 u"RadioOption: "_s + kDecline,
                 u"RadioOption: "_s + kAccept,
                 u"stretch"_s,
             }));
}

void TestLicensePage::view()
{
    LicensePage page;
    const auto *view = page.findChild<QPlainTextEdit *>();
    QVERIFY(view->isReadOnly());
    QCOMPARE(view->minimumHeight(), 150);
    QCOMPARE(view->maximumHeight(), 150);
    QCOMPARE(view->frameShape(), QFrame::NoFrame);
    QCOMPARE(view->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(view->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(view->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(view->font().pixelSize(), 11);
    QCOMPARE(view->accessibleName(), u"License Agreement"_s);
}

void TestLicensePage::viewFollowsTheTheme()
{
    LicensePage page;
    const auto *view = page.findChild<QPlainTextEdit *>();
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(
            view->styleSheet(),
            coloured(
                u"QPlainTextEdit{background:%1;border:1px solid %2;border-radius:8px;"
                "padding:12px 13px;color:%3;}QScrollBar:vertical{background:transparent;width:10px;"
                "margin:6px 4px 6px 0;border:none;}QScrollBar::handle:vertical{background:%4;"
                "border-radius:3px;min-height:28px;}QScrollBar::handle:vertical:hover{"
                "background:%5;}QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{"
                "height:0;border:none;background:none;}QScrollBar::add-page:vertical,"
                "QScrollBar::sub-page:vertical{background:none;}QScrollBar:horizontal{height:0;"
                "background:transparent;}"_s,
                { u"@INS_PANEL"_s, u"@INS_LINE"_s, u"@INS_TX2"_s, u"@INS_LINE2"_s,
                  u"@INS_TX3"_s }));
    }
}

void TestLicensePage::textComesFromTheProgramsFolder()
{
    QVERIFY(LicensePage().findChild<QPlainTextEdit *>()->toPlainText().startsWith(
        u"Varnel Schematics — License Agreement\n\n© 2026 Varnel Solutions Team."_s));
    writeLicense("\n  The licence.\nIts end.\n");
    QCOMPARE(LicensePage().findChild<QPlainTextEdit *>()->toPlainText(),
             u"The licence.\nIts end."_s);
}

void TestLicensePage::textIsReadOnce()
{
    writeLicense("First");
    LicensePage page;
    writeLicense("Second");
    page.show();
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(page.findChild<QPlainTextEdit *>()->toPlainText(), u"First"_s);
}

void TestLicensePage::viewShowsTheFocus()
{
    LicensePage page;
    page.resize(kPageSize);
    page.show();
    page.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    auto *view = page.findChild<QPlainTextEdit *>();
    const QPointF edge(view->width() / 2.0, 0.5);
    const QColor ring = themedColor(u"@INS_ACCENT"_s);
    view->setFocus(Qt::MouseFocusReason);
    QVERIFY(colourAt(grabWidget(*view), edge) != ring);
    view->clearFocus();
    view->setFocus(Qt::TabFocusReason);
    QCOMPARE(colourAt(grabWidget(*view), edge), ring);
    view->clearFocus();
    QVERIFY(colourAt(grabWidget(*view), edge) != ring);
}

void TestLicensePage::textIsLiteral()
{
    writeLicense(kLiteral.toUtf8());
    QCOMPARE(LicensePage().findChild<QPlainTextEdit *>()->toPlainText(), kLiteral);
}

void TestLicensePage::longTextScrolls()
{
    writeLicense("Short");
    LicensePage shortOne;
    QVERIFY(fitsWindow(&shortOne));
    QCOMPARE(shortOne.findChild<QPlainTextEdit *>()->verticalScrollBar()->maximum(), 0);

    writeLicense(QByteArray("A line of the licence.\n").repeated(200));
    LicensePage longOne;
    longOne.resize(kPageSize);
    longOne.show();
    const auto *view = longOne.findChild<QPlainTextEdit *>();
    QVERIFY(view->verticalScrollBar()->isVisible());
    QCOMPARE(view->verticalScrollBar()->value(), 0);
    QVERIFY(!view->horizontalScrollBar()->isVisible());
}

void TestLicensePage::isNotAcceptedAtFirst()
{
    LicensePage page;
    QVERIFY(!page.isAccepted());
    QVERIFY(option(page, kDecline)->isChecked());
    QVERIFY(!option(page, kAccept)->isChecked());
}

void TestLicensePage::answerChangesByClick()
{
    LicensePage page;
    page.resize(kPageSize);
    page.show();
    QSignalSpy changes(&page, &LicensePage::acceptedChanged);
    QTest::mouseClick(option(page, kAccept), Qt::LeftButton);
    QVERIFY(page.isAccepted());
    QVERIFY(!option(page, kDecline)->isChecked());
    QTest::mouseClick(option(page, kDecline), Qt::LeftButton);
    QVERIFY(!page.isAccepted());
    QCOMPARE(changes, (QList<QVariantList> { { true }, { false } }));
}

void TestLicensePage::answerChangesByArrowKeys()
{
    LicensePage page;
    page.resize(kPageSize);
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    option(page, kDecline)->setFocus();
    QTest::keyClick(page.focusWidget(), Qt::Key_Down);
    QVERIFY(page.isAccepted());
    QCOMPARE(page.focusWidget(), option(page, kAccept));
    QTest::keyClick(page.focusWidget(), Qt::Key_Up);
    QVERIFY(!page.isAccepted());
    QCOMPARE(page.focusWidget(), option(page, kDecline));
}

void TestLicensePage::answerTakesTheFocus()
{
    LicensePage page;
    page.resize(kPageSize);
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    page.answer()->setFocus();
    QCOMPARE(page.focusWidget(), option(page, kDecline));
    option(page, kAccept)->setChecked(true);
    page.answer()->setFocus();
    QCOMPARE(page.focusWidget(), option(page, kAccept));
}

void TestLicensePage::tellsOnlyChanges()
{
    LicensePage page;
    page.resize(kPageSize);
    page.show();
    QSignalSpy changes(&page, &LicensePage::acceptedChanged);
    QTest::mouseClick(option(page, kDecline), Qt::LeftButton);
    QCOMPARE(changes.size(), 0);
    QTest::mouseClick(option(page, kAccept), Qt::LeftButton);
    QTest::mouseClick(option(page, kAccept), Qt::LeftButton);
    QCOMPARE(changes, (QList<QVariantList> { { true } }));
}

void TestLicensePage::fits()
{
    writeLicense(longWord().toUtf8());
    LicensePage page;
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestLicensePage)
#include "tst_licensepage.moc"
