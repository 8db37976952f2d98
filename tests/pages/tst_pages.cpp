// What the pages say, and what they ask for. Where everything stands and what it looks like is
// recorded in tests/wizard/structure/.

#include "app/applicationfonts.h"
#include "pages/confirmuninstallpage.h"
#include "pages/finishedpage.h"
#include "pages/lightthemetest.h"
#include "pages/pagetext.h"
#include "pages/readypage.h"
#include "pages/readytoupdatepage.h"
#include "pages/summarybox.h"
#include "pages/taskspage.h"
#include "pages/updateavailablepage.h"
#include "pages/updatefinishedpage.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "theme/thememanager.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

using Page = std::unique_ptr<WizardPage>;
using MakePage = Page (*)(const QString &text);

/// A page on which `set` has been called.
template <typename T, typename... Parameters, typename... Values>
Page pageWith(void (T::*set)(Parameters...), const Values &...values)
{
    auto page = std::make_unique<T>();
    (page.get()->*set)(values...);
    return page;
}

QString withoutBlanks(const QString &text)
{
    return QString(text).remove(QRegularExpression(u"\\s"_s));
}

} // namespace

class TestPages : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void textsAtFirst();
    void outsideTextIsLiteral_data();
    void outsideTextIsLiteral();
    void longTextFits_data() { outsideTextIsLiteral_data(); }
    void longTextFits();
    void versionsAreNamed();
    void summaryKeepsTheColourOfItsMoment();
    void answersAtFirst();
};

// Before the window has told the pages anything; and what one of them keeps.
void TestPages::textsAtFirst()
{
    const ConfirmUninstallPage confirm;
    QVERIFY(labelOf(&confirm, u"This will remove Varnel Schematics from your computer."_s));
    const UpdateFinishedPage updated;
    QVERIFY(labelOf(&updated, u"Now running version 1.6.9.\nYour settings were preserved."_s));
    const QString kept =
        u"Destination location:\n%1\n\nYour preferences and license will be kept."_s;
    ReadyToUpdatePage ready;
    QVERIFY(labelOf(&ready, u"Setup will update Varnel Schematics to version 1.6.9."_s));
    QVERIFY(labelOf(&ready, kept.arg(uR"(C:\Program Files\Varnel Schematics)"_s)));
    ready.setDetails(u"1.7"_s, u"/opt"_s);
    ready.setDetails(u"1.8"_s, {}); // an unknown folder: the one before stays
    QVERIFY(labelOf(&ready, kept.arg(u"/opt"_s)));
    QVERIFY(labelOf(&ready, u"Setup will update Varnel Schematics to version 1.8."_s));
}

/// Every place where text from outside is shown.
void TestPages::outsideTextIsLiteral_data()
{
    QTest::addColumn<MakePage>("make");
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<bool>("wraps"); // instead of being shortened, while there is room
    const auto row = [](const char *name, const QString &sentence, bool wraps, MakePage make) {
        QTest::newRow(name) << make << sentence << wraps;
    };
    row("version to be removed", u"This will remove Varnel Schematics %1 from your computer."_s,
        true,
        [](const QString &text) { return pageWith(&ConfirmUninstallPage::setVersion, text); });
    row("destination",
        u"Destination location:\n%1\n\nAdditional tasks:\nCreate a desktop shortcut"_s, false,
        [](const QString &text) { return pageWith(&ReadyPage::setSummary, text, true); });
    row("folder of an update",
        u"Destination location:\n%1\n\nYour preferences and license will be kept."_s, false,
        [](const QString &text) { return pageWith(&ReadyToUpdatePage::setDetails, u"2"_s, text); });
    row("version of an update", u"Setup will update Varnel Schematics to version %1."_s, true,
        [](const QString &text) { return pageWith(&ReadyToUpdatePage::setDetails, text, u"/"_s); });
    row("installed version", u"Installed %1"_s, false, [](const QString &text) {
        return pageWith(&UpdateAvailablePage::setVersions, text, u"2"_s);
    });
    row("available version", u"Available %1"_s, false, [](const QString &text) {
        return pageWith(&UpdateAvailablePage::setVersions, u"1"_s, text);
    });
    row("installed folder", u"Installed to %1.\nA shortcut is on your desktop."_s, true,
        [](const QString &text) { return pageWith(&FinishedPage::setResult, text, true); });
    row("version after an update", u"Now running version %1.\nYour settings were preserved."_s,
        true, [](const QString &text) { return pageWith(&UpdateFinishedPage::setVersion, text); });
}

void TestPages::outsideTextIsLiteral()
{
    QFETCH(const MakePage, make);
    QFETCH(const QString, sentence);
    for (const QString &text :
         { kLiteral, u"/a&lt;b"_s, u"/a  b   c"_s, u"%1 %2 %3 %%"_s, u"\"@INS_TX\""_s }) {
        const Page page = make(text);
        page->resize(1500, kPageSize.height()); // no line has to be broken
        QLabel *label = labelOf(page.get(), sentence.arg(text));
        QVERIFY(label);
        const QImage laidOut = grabWidget(*page);
        QCOMPARE(shownLines(*label), sentence.arg(text).split(u'\n', Qt::SkipEmptyParts));
    }
}

void TestPages::longTextFits()
{
    QFETCH(const MakePage, make);
    QFETCH(const QString, sentence);
    QFETCH(const bool, wraps);
    const QString folders =
        u"C:\\"_s + u"firstname.lastname\\<b>one  two & c\\"_s.repeated(8) + u"x64"_s;
    const QString endless = longWord().repeated(50);
    for (const QString &text : { longWord(), folders, endless }) {
        const Page page = make(text);
        QVERIFY(fitsWindow(page.get()));
        QLabel *label = labelOf(page.get(), sentence.arg(text));
        QVERIFY(label);
        const QString whole = withoutBlanks(sentence.arg(text));
        const QStringList parts = withoutBlanks(shownLines(*label).join(QString())).split(u'…');
        if (wraps && text != endless) {
            QCOMPARE(parts, QStringList(whole));
            QCOMPARE(toolTipOf(*label), QString());
            continue;
        }
        // Only the middle of the text is left out.
        QCOMPARE(parts.size(), 2);
        QVERIFY2(whole.startsWith(parts[0]) && whole.endsWith(parts[1]),
                 qPrintable(parts.join(u'|')));
        QVERIFY(parts[0].size() > withoutBlanks(sentence.section(u"%1"_s, 0, 0)).size());
        QVERIFY(parts[1].size() > withoutBlanks(sentence.section(u"%1"_s, 1)).size());
        QVERIFY(toolTipOf(*label).contains(text));
    }
}

void TestPages::versionsAreNamed()
{
    const Page page = pageWith(&UpdateAvailablePage::setVersions, QString(), u"1.6.9"_s);
    const auto read = [&page](const QString &shown) {
        const auto *label = QAccessible::queryAccessibleInterface(labelOf(page.get(), shown));
        return label->text(QAccessible::Name) + label->text(QAccessible::Description);
    };
    QCOMPARE(read(u"Installed not found"_s), u"Installed version: not found"_s);
    QCOMPARE(read(u"Available 1.6.9"_s), u"Available version: 1.6.9"_s);
}

void TestPages::summaryKeepsTheColourOfItsMoment()
{
    ReadyPage page;
    const auto colour = [&page] {
        return draw(*page.findChild<SummaryBox *>(), 1.0).texts.first().colour;
    };
    page.setSummary(u"/opt"_s, true);
    const QColor light = colour();
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(colour(), light);
    page.setSummary(u"/opt"_s, true);
    QCOMPARE(colour(), themedColor(u"@INS_TX"_s));
}

void TestPages::answersAtFirst()
{
    QVERIFY(TasksPage().desktopShortcut());
    QVERIFY(!ConfirmUninstallPage().deletePreferences());
}

QTEST_MAIN(TestPages)
#include "tst_pages.moc"
