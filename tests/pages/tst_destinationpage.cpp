#include "app/applicationfonts.h"
#include "pages/destinationpage.h"
#include "pages/folderchooser.h"
#include "pages/lightthemetest.h"
#include "pages/pagetext.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QSettings>
#include <QStorageInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kRequired = u"220 MB required · "_s;

struct ShownPage : DestinationPage
{
    ShownPage()
    {
        resize(kPageSize);
        show();
    }

    [[nodiscard]] QPushButton *changeButton() const { return findChild<QPushButton *>(); }
    /// Null if no label shows the path.
    [[nodiscard]] QLabel *pathLabel() const { return labelOf(this, path()); }
    [[nodiscard]] QLabel *diskSpace() const
    {
        for (QLabel *label : findChildren<QLabel *>()) {
            if (label->text().startsWith(kRequired))
                return label;
        }
        return nullptr;
    }
    void choose(const QString &folder)
    {
        ::chooseFolder(changeButton(), folder);
        QVERIFY(pathLabel());
    }
};

} // namespace

class TestDestinationPage : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void folder();
    void tellsTheSpaceOfThisMoment();
    void folderChooser();
    void chosenFolder();
    void longTexts();

private:
    Sandbox m_sandbox;
};

void TestDestinationPage::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    registerApplicationFonts();
}

void TestDestinationPage::folder()
{
    const QString markup = u"/opt/"_s + kLiteral;
    ShownPage page;
    QCOMPARE(page.path(), m_sandbox.nativePath(u"programs/Varnel Schematics"_s));
    QVERIFY(page.pathLabel());
    QCOMPARE(page.pathLabel()->accessibleDescription(), u"INSTALL TO"_s);
    QCOMPARE(labelOf(&page, u"INSTALL TO"_s)->font().letterSpacing(), 110.0);
    const QString volume = QStorageInfo(m_sandbox.path({})).rootPath();
    const QString space = page.diskSpace()->text();
    QVERIFY2(space.endsWith(u" on "_s + QDir::toNativeSeparators(volume)), qPrintable(space));
    for (const QString &path :
         { u"/opt/Varnel Schematics"_s, uR"(D:\Tools)"_s, markup, u" /opt/\"a\"  "_s }) {
        page.setPath(path);
        QCOMPARE(page.path(), QDir::toNativeSeparators(path));
        QVERIFY(page.pathLabel());
        QCOMPARE(shownLines(*page.pathLabel()), QStringList(page.path()));
    }
}

// The figure belongs to the folder that is shown, however the folder came to be shown.
void TestDestinationPage::tellsTheSpaceOfThisMoment()
{
#ifndef Q_OS_LINUX
    QSKIP("Needs a second volume that is always there");
#endif
    const auto isTold = [](const ShownPage &page) {
        return page.diskSpace() && page.diskSpace()->text().endsWith(u" on /proc"_s);
    };
    ShownPage page;
    page.hide();
    page.setPath(u"/proc"_s);
    QVERIFY(!page.diskSpace()); // a hidden page must not wait for a slow disk
    page.show();
    QVERIFY(isTold(page));
    page.setPath(m_sandbox.path({}));
    QVERIFY(!isTold(page));
    page.choose(u"/proc"_s);
    QVERIFY(isTold(page));
}

void TestDestinationPage::folderChooser()
{
    const QString desktop = m_sandbox.path(u"desktop"_s);
    ShownPage page;
    page.setPath(desktop);
    useFolderChooser(page.changeButton(), [&](QFileDialog *dialog) {
        QCOMPARE(dialog->parentWidget(), &page);
        QCOMPARE(dialog->windowTitle(), u"Select install location"_s);
        QCOMPARE(dialog->directory().absolutePath(), desktop);
        QCOMPARE(dialog->fileMode(), QFileDialog::Directory);
        QVERIFY(dialog->testOption(QFileDialog::ShowDirsOnly));
        dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(m_sandbox.path(u"home"_s));
        dialog->reject();
    });
    QCOMPARE(page.path(), QDir::toNativeSeparators(desktop));
    QVERIFY(page.pathLabel());
    page.choose(m_sandbox.path(u"home/../desktop/"_s));
    QCOMPARE(page.path(), QDir::toNativeSeparators(desktop));

    // Nothing of the dialog stays on the user's machine.
#ifdef Q_OS_WIN
    QCOMPARE(m_sandbox.storedRegistry().filter(u"QtProject"_s), QStringList());
#else
    const QSettings settings(QSettings::UserScope, u"QtProject"_s);
    QVERIFY2(!QFileInfo::exists(settings.fileName()), qPrintable(settings.fileName()));
#endif
}

// Taken literally, but the root of a drive gets the product's folder.
void TestDestinationPage::chosenFolder()
{
    ShownPage page;
    for (const QString &name :
         { Sandbox::oddName(), u"Schaltpläne 電路"_s, u"Varnel Schematics"_s, longWord() }) {
        const QString folder = m_sandbox.path(name);
        QVERIFY(QDir().mkpath(folder));
        page.choose(folder);
        QCOMPARE(page.path(), QDir::toNativeSeparators(folder));
    }
    page.choose(QDir::rootPath());
    QCOMPARE(page.path(), QDir::toNativeSeparators(QDir::rootPath() + u"Varnel Schematics"));
}

void TestDestinationPage::longTexts()
{
    ShownPage page;
    const QString figure = kRequired + u"95.3 GB free on "_s;
    page.diskSpace()->setText(figure + u"\\\\"_s + longWord() + u"\\share");
    QCOMPARE(shownLines(*page.diskSpace()).size(), 1);
    QVERIFY(shownLines(*page.diskSpace()).first().startsWith(figure + u"\\\\mmm"));

    const QRect button = page.changeButton()->geometry();
    const QRect label = page.pathLabel()->geometry();
    page.setPath(u"/"_s + longWord());
    QVERIFY(fitsWindow(&page));
    QCOMPARE(page.changeButton()->geometry(), button);
    QCOMPARE(page.pathLabel()->geometry(), label);
}

QTEST_MAIN(TestDestinationPage)
#include "tst_destinationpage.moc"
