#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/updateavailablepage.h"
#include "support/drawing.h"
#include "theme/thememanager.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QLabel *chipOf(const UpdateAvailablePage &page, const QString &prefix)
{
    for (QLabel *label : page.findChildren<QLabel *>()) {
        if (label->property("chipPrefix").toString() == prefix)
            return label;
    }
    return nullptr;
}

QString chipText(const QString &prefix, const QString &version)
{
    return prefix + coloured(u" <span style=\"color:%1;font-weight:600;\">"_s, { u"@INS_TX"_s })
        + version + u"</span>";
}

} // namespace

class TestUpdateAvailablePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void chips();
    void arrow();
    void versions_data();
    void versions();
    void followsTheTheme();
    void fits_data();
    void fits();
    void longVersionLosesItsMiddle();
};

void TestUpdateAvailablePage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestUpdateAvailablePage::layout()
{
    UpdateAvailablePage page;
    page.setVersions(u"1.6.8"_s, u"1.6.9"_s);
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Update Available for Varnel Schematics"_s,
                 u"gap 5"_s,
                 u"label: A newer version is ready to install.\n"
                 "Your settings and files will be kept."_s,
                 u"gap 16"_s,
                 u"row, spacing 10"_s,
                 u"  label: "_s + chipText(u"Installed"_s, u"1.6.8"_s),
                 u"  label: →"_s,
                 u"  label: "_s + chipText(u"Available"_s, u"1.6.9"_s),
                 u"  stretch"_s,
                 u"stretch"_s,
             }));
}

void TestUpdateAvailablePage::chips()
{
    UpdateAvailablePage page;
    for (const QString &prefix : { u"Installed"_s, u"Available"_s }) {
        const QLabel *chip = chipOf(page, prefix);
        QVERIFY(chip);
        QCOMPARE(chip->textFormat(), Qt::RichText);
        QCOMPARE(chip->minimumHeight(), 30);
        QCOMPARE(chip->maximumHeight(), 30);
        QCOMPARE(chip->font().family(), u"JetBrains Mono"_s);
        QCOMPARE(chip->font().pixelSize(), 11);
    }
}

void TestUpdateAvailablePage::arrow()
{
    UpdateAvailablePage page;
    QLabel *arrow = labelOf(&page, u"→"_s);
    QVERIFY(arrow);
    QCOMPARE(arrow->font().pixelSize(), 13);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(arrow->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
    }
}

void TestUpdateAvailablePage::versions_data()
{
    QTest::addColumn<QString>("installed");
    QTest::addColumn<QString>("installedText");
    QTest::addColumn<QString>("available");
    QTest::newRow("both") << u"1.6.8"_s << u"1.6.8"_s << u"1.6.9"_s;
    QTest::newRow("none recorded") << QString() << u"not found"_s << u"1.6.9"_s;
    QTest::newRow("markup") << u"a&b <i>%2"_s << u"a&amp;b &lt;i&gt;%2"_s << u"1.6.9"_s;
    QTest::newRow("place markers") << u"%1 %3"_s << u"%1 %3"_s << u"%2"_s;
}

void TestUpdateAvailablePage::versions()
{
    QFETCH(QString, installed);
    QFETCH(QString, installedText);
    QFETCH(QString, available);
    UpdateAvailablePage page;
    page.setVersions(installed, available);
    const QLabel *left = chipOf(page, u"Installed"_s);
    const QLabel *right = chipOf(page, u"Available"_s);
    QCOMPARE(left->text(), chipText(u"Installed"_s, installedText));
    QCOMPARE(right->text(), chipText(u"Available"_s, available));
    QCOMPARE(right->property("chipVersion").toString(), available);
    const QString shown = installed.isEmpty() ? u"not found"_s : installed;
    QCOMPARE(left->property("chipVersion").toString(), shown);
    QCOMPARE(shownText(left), u"Installed "_s + shown);
    QCOMPARE(shownText(right), u"Available "_s + available);
}

void TestUpdateAvailablePage::followsTheTheme()
{
    UpdateAvailablePage page;
    page.setVersions({}, u"1.6.9"_s);
    for (bool dark : { true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(chipOf(page, u"Installed"_s)->text(), chipText(u"Installed"_s, u"not found"_s));
        QCOMPARE(chipOf(page, u"Available"_s)->text(), chipText(u"Available"_s, u"1.6.9"_s));
        for (const QString &prefix : { u"Installed"_s, u"Available"_s }) {
            QCOMPARE(chipOf(page, prefix)->styleSheet(),
                     coloured(u"background:%1;border:1px solid %2;border-radius:8px;"
                              "padding:0 12px;color:%3;"_s,
                              { u"@INS_PANEL"_s, u"@INS_LINE"_s, u"@INS_TX2"_s }));
        }
    }
}

void TestUpdateAvailablePage::fits_data()
{
    QTest::addColumn<QString>("installed");
    QTest::newRow("usual") << u"1.6.8"_s;
    QTest::newRow("none recorded") << QString();
    QTest::newRow("one long word") << longWord();
}

// Also the newer version has to stay in sight, whatever the registry holds.
void TestUpdateAvailablePage::fits()
{
    QFETCH(QString, installed);
    UpdateAvailablePage page;
    page.setVersions(installed, u"1.6.9"_s);
    QVERIFY(fitsWindow(&page));
    const QLabel *available = chipOf(page, u"Available"_s);
    QVERIFY(available->width() >= available->sizeHint().width());
}

void TestUpdateAvailablePage::longVersionLosesItsMiddle()
{
    UpdateAvailablePage page;
    const QString version = u"1.6.8-beta.20260130+"_s.repeated(8) + u"x64"_s;
    page.setVersions(version, u"1.6.9"_s);
    QVERIFY(fitsWindow(&page));
    QLabel *installed = chipOf(page, u"Installed"_s);
    const QStringList lines = shownLines(*installed);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(u"Installed 1.6.8-"), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(u"+x64"), qPrintable(lines[0]));
    QCOMPARE(lines[0].count(u'…'), 1);
    QCOMPARE(toolTipOf(*installed), version);
    QCOMPARE(QAccessible::queryAccessibleInterface(installed)->text(QAccessible::Name),
             u"Installed version: "_s + version);
    QCOMPARE(QAccessible::queryAccessibleInterface(installed)->text(QAccessible::Description),
             QString());

    // The two chips are read as one line.
    QLabel *available = chipOf(page, u"Available"_s);
    QCOMPARE(shownLines(*available), QStringList(u"Available 1.6.9"_s));
    QCOMPARE(toolTipOf(*available), QString());
    const auto baseline = [](QLabel *chip) { return draw(*chip, 1.0).texts.first().baseline.y(); };
    QCOMPARE(baseline(installed), baseline(available));
}

QTEST_MAIN(TestUpdateAvailablePage)
#include "tst_updateavailablepage.moc"
