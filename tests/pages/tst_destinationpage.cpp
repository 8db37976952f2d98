#include "app/applicationfonts.h"
#include "pages/destinationpage.h"
#include "pages/folderchooser.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"

#include <QAccessible>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QSettings>
#include <QStorageInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

QPushButton *changeButton(const DestinationPage &page)
{
    return page.findChild<QPushButton *>();
}

QLabel *pathLabel(const DestinationPage &page)
{
    return page.findChildren<QLabel *>().at(3);
}

QLabel *diskSpaceLabel(const DestinationPage &page)
{
    return page.findChildren<QLabel *>().last();
}

template <typename Use>
void changeFolder(const DestinationPage &page, Use use)
{
    useFolderChooser(changeButton(page), use);
}

void choose(const DestinationPage &page, const QString &folder)
{
    chooseFolder(changeButton(page), folder);
}

} // namespace

class TestDestinationPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void layout();
    void caption();
    void pathLabelLooks();
    void changeButtonLooks();
    void stylesFollowTheTheme();
    void startsAtTheDefaultFolder();
    void setPath_data();
    void setPath();
    void tellsTheSpaceOfTheFolder();
    void tellsTheSpaceOfThisMoment();
    void folderChooserIsAskedForAFolder();
    void cancelledChooserChangesNothing();
    void chooserLeavesNoSettings();
    void chosenFolderIsTakenLiterally_data();
    void chosenFolderIsTakenLiterally();
    void bareRootGetsTheProductsFolder();
    void longVolumeKeepsTheFigure();
    void longPathMovesNothing();
    void fits();

private:
    Sandbox m_sandbox;
};

void TestDestinationPage::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    registerApplicationFonts();
}

void TestDestinationPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestDestinationPage::layout()
{
    DestinationPage page;
    page.setPath(u"/opt"_s);
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Select Destination Location"_s,
                 u"gap 5"_s,
                 u"label: Setup will install Varnel Schematics into the following folder."_s,
                 u"gap 20"_s,
                 u"label: INSTALL TO"_s,
                 u"gap 8"_s,
                 u"row, spacing 8"_s,
                 u"  label: %1, stretch 1"_s.arg(QDir::toNativeSeparators(u"/opt"_s)),
                 u"  button: Change"_s,
                 u"gap 7"_s,
                 u"label: "_s, // the space is told when the page is seen
                 u"stretch"_s,
             }));
}

void TestDestinationPage::caption()
{
    DestinationPage page;
    const QLabel *caption = labelOf(&page, u"INSTALL TO"_s);
    QVERIFY(caption);
    QCOMPARE(caption->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(caption->font().pixelSize(), 10);
    QCOMPARE(caption->font().letterSpacingType(), QFont::PercentageSpacing);
    QCOMPARE(caption->font().letterSpacing(), 110.0);
    QCOMPARE(caption->styleSheet(), coloured(u"color:%1;"_s, { u"@INS_TX3"_s }));
}

void TestDestinationPage::pathLabelLooks()
{
    DestinationPage page;
    const QLabel *label = pathLabel(page);
    QCOMPARE(label->minimumHeight(), 34);
    QCOMPARE(label->maximumHeight(), 34);
    QCOMPARE(label->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(label->font().pixelSize(), 11);
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void TestDestinationPage::changeButtonLooks()
{
    DestinationPage page;
    QCOMPARE(changeButton(page)->text(), u"Change"_s);
    QCOMPARE(changeButton(page)->minimumHeight(), 30);
    QCOMPARE(changeButton(page)->maximumHeight(), 30);
    QCOMPARE(changeButton(page)->cursor().shape(), Qt::PointingHandCursor);
}

void TestDestinationPage::stylesFollowTheTheme()
{
    DestinationPage page;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(pathLabel(page)->styleSheet(),
                 coloured(u"background:%1;border:1px solid %2;border-radius:8px;padding:0 11px;"
                          "color:%3;"_s,
                          { u"@INS_PANEL"_s, u"@INS_LINE"_s, u"@INS_TX"_s }));
        QCOMPARE(changeButton(page)->styleSheet(),
                 coloured(u"QPushButton{padding:0 14px;border-radius:8px;background:%1;"
                          "border:1px solid %2;color:%3;}"
                          "QPushButton:hover{background:%4;border-color:%5;}"_s,
                          { u"@INS_BG"_s, u"@INS_LINE2"_s, u"@INS_TX"_s, u"@INS_PANEL"_s,
                            u"@INS_TX3"_s }));
    }
}

void TestDestinationPage::startsAtTheDefaultFolder()
{
    DestinationPage page;
    const QString folder =
        QDir::toNativeSeparators(m_sandbox.path(u"programs/Varnel Schematics"_s));
    QCOMPARE(page.path(), folder);
    QCOMPARE(pathLabel(page)->text(), folder);
}

void TestDestinationPage::setPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("usual") << u"/opt/Varnel Schematics"_s;
    QTest::newRow("another drive") << uR"(D:\Tools)"_s;
    QTest::newRow("markup") << u"/opt/"_s + kLiteral;
    QTest::newRow("other letters") << u"/opt/Schaltpläne/電路"_s;
    QTest::newRow("quotes and blanks at the ends") << u" /opt/\"a\"  "_s;
    QTest::newRow("long") << u"/"_s + longWord();
}

void TestDestinationPage::setPath()
{
    QFETCH(QString, path);
    DestinationPage page;
    page.setPath(path);
    QCOMPARE(page.path(), QDir::toNativeSeparators(path));
    QCOMPARE(pathLabel(page)->text(), QDir::toNativeSeparators(path));
}

void TestDestinationPage::tellsTheSpaceOfTheFolder()
{
    DestinationPage page;
    page.resize(kPageSize);
    const QString text = diskSpaceLabel(page)->text();
    QVERIFY2(text.startsWith(u"220 MB required · "_s), qPrintable(text));
    const QString volume = QStorageInfo(m_sandbox.path({})).rootPath();
    QVERIFY2(text.endsWith(u" on "_s + QDir::toNativeSeparators(volume)), qPrintable(text));
    QCOMPARE(diskSpaceLabel(page)->font().family(), u"JetBrains Mono"_s);
    QCOMPARE(diskSpaceLabel(page)->font().pixelSize(), 10);
}

// The figure belongs to the folder that is shown, however the folder came to be shown.
void TestDestinationPage::tellsTheSpaceOfThisMoment()
{
#ifndef Q_OS_LINUX
    QSKIP("Needs a second volume that is always there");
#endif
    const QString other = u" on /proc"_s;
    DestinationPage page;
    page.resize(kPageSize);
    page.setPath(u"/proc"_s);
    QCOMPARE(diskSpaceLabel(page)->text(), QString()); // nobody sees it, so nobody waits for it
    page.show();
    QVERIFY(diskSpaceLabel(page)->text().endsWith(other));
    page.setPath(m_sandbox.path({}));
    QVERIFY(!diskSpaceLabel(page)->text().endsWith(other));
    page.setPath(u"/proc/self"_s);
    QVERIFY(diskSpaceLabel(page)->text().endsWith(other));
    page.setPath(m_sandbox.path({}));
    choose(page, u"/proc"_s);
    QVERIFY(diskSpaceLabel(page)->text().endsWith(other));
}

void TestDestinationPage::folderChooserIsAskedForAFolder()
{
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    page.setPath(m_sandbox.path(u"desktop"_s));
    changeFolder(page, [&](QFileDialog *dialog) {
        QCOMPARE(dialog->parentWidget(), &page);
        QCOMPARE(dialog->windowTitle(), u"Select install location"_s);
        QCOMPARE(dialog->directory().absolutePath(), m_sandbox.path(u"desktop"_s));
        QCOMPARE(dialog->fileMode(), QFileDialog::Directory);
        QVERIFY(dialog->testOption(QFileDialog::ShowDirsOnly));
    });
}

void TestDestinationPage::cancelledChooserChangesNothing()
{
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    page.setPath(m_sandbox.path(u"desktop"_s));
    changeFolder(page, [&](QDialog *dialog) {
        dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(m_sandbox.path(u"home"_s));
        dialog->reject();
    });
    QCOMPARE(page.path(), m_sandbox.nativePath(u"desktop"_s));
    QCOMPARE(pathLabel(page)->text(), m_sandbox.nativePath(u"desktop"_s));
}

void TestDestinationPage::chooserLeavesNoSettings()
{
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    page.setPath(m_sandbox.path(u"desktop"_s));
    changeFolder(page, [](QDialog *dialog) { dialog->reject(); });
    choose(page, m_sandbox.path(u"home"_s));
#ifdef Q_OS_WIN
    QCOMPARE(m_sandbox.storedRegistry().filter(u"QtProject"_s), QStringList());
#else
    const QSettings settings(QSettings::UserScope, u"QtProject"_s);
    QVERIFY2(!QFileInfo::exists(settings.fileName()), qPrintable(settings.fileName()));
#endif
}

void TestDestinationPage::chosenFolderIsTakenLiterally_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("usual") << u"Tools"_s;
    QTest::newRow("markup") << Sandbox::oddName();
    QTest::newRow("quotes") << u"'a' 'b'"_s;
    QTest::newRow("other letters") << u"Schaltpläne 電路"_s;
    QTest::newRow("long") << longWord();
    QTest::newRow("the product's own name") << u"Varnel Schematics"_s;
}

void TestDestinationPage::chosenFolderIsTakenLiterally()
{
    QFETCH(QString, name);
    const QString folder = m_sandbox.path(name);
    QVERIFY(QDir().mkpath(folder));
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    choose(page, folder);
    QCOMPARE(page.path(), QDir::toNativeSeparators(folder));
    QCOMPARE(pathLabel(page)->text(), page.path());
    choose(page, m_sandbox.path(u"home/../desktop/"_s));
    QCOMPARE(page.path(), QDir::toNativeSeparators(m_sandbox.path(u"desktop"_s)));
}

void TestDestinationPage::bareRootGetsTheProductsFolder()
{
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    choose(page, QDir::rootPath());
    QCOMPARE(page.path(), QDir::toNativeSeparators(QDir::rootPath() + u"Varnel Schematics"));
}

void TestDestinationPage::longVolumeKeepsTheFigure()
{
    const QString figure = u"220 MB required · 95.3 GB free on "_s;
    const QString text = figure + u"\\\\"_s + longWord() + u"\\share";
    DestinationPage page;
    QLabel *space = diskSpaceLabel(page);
    QVERIFY(fitsWindow(&page));
    space->setText(text);
    const QStringList lines = shownLines(*space);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith(figure + u"\\\\mmm"), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(u"\\share"), qPrintable(lines[0]));
    QCOMPARE(lines[0].count(u'…'), 1);
    QCOMPARE(toolTipOf(*space), text);
    QCOMPARE(QAccessible::queryAccessibleInterface(space)->text(QAccessible::Name), text);
}

void TestDestinationPage::longPathMovesNothing()
{
    DestinationPage page;
    page.resize(kPageSize);
    page.show();
    page.setPath(u"/opt"_s);
    const QRect button = changeButton(page)->geometry();
    const QRect label = pathLabel(page)->geometry();
    QCOMPARE(button.right(), kPageSize.width() - 22 - 1);
    page.setPath(u"/"_s + longWord());
    page.layout()->activate();
    QCOMPARE(changeButton(page)->geometry(), button);
    QCOMPARE(pathLabel(page)->geometry(), label);
}

void TestDestinationPage::fits()
{
    DestinationPage page;
    page.setPath(u"/"_s + longWord());
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestDestinationPage)
#include "tst_destinationpage.moc"
