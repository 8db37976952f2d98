#include "app/applicationfonts.h"
#include "pages/licensepage.h"
#include "pages/lightthemetest.h"
#include "pages/pagetext.h"
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

struct ShownPage : LicensePage
{
    ShownPage()
    {
        resize(kPageSize);
        show();
    }

    [[nodiscard]] QPlainTextEdit *view() const { return findChild<QPlainTextEdit *>(); }
    [[nodiscard]] RadioOption *accept() const { return option(u"I accept the license agreement"); }
    [[nodiscard]] RadioOption *decline() const { return option(u"I do not accept the agreement"); }

private:
    [[nodiscard]] RadioOption *option(QStringView text) const
    {
        for (RadioOption *option : findChildren<RadioOption *>()) {
            if (option->text() == text)
                return option;
        }
        return nullptr;
    }
};

} // namespace

class TestLicensePage : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void cleanup() { QFile::remove(licenseFile()); }
    void textComesFromTheProgramsFolder();
    void viewShowsTheFocus();
    void longTextScrolls();
    void longLineIsWrapped();
    void answerChangesByClick();
};

void TestLicensePage::textComesFromTheProgramsFolder()
{
    writeLicense("\n  The licence.\n" + kLiteral.toUtf8());
    const ShownPage page;
    const QString text = u"The licence.\n"_s + kLiteral;
    QCOMPARE(page.view()->toPlainText(), text);
    QVERIFY(page.view()->isReadOnly());
    QCOMPARE(page.view()->accessibleName(), u"License Agreement"_s);
}

void TestLicensePage::viewShowsTheFocus()
{
    ShownPage page;
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QPlainTextEdit *view = page.view();
    view->clearFocus(); // which it was given with the window
    view->setFocus(Qt::TabFocusReason);
    QCOMPARE(colourAt(grabWidget(*view), { view->width() / 2.0, 0.5 }),
             themedColor(u"@INS_ACCENT"_s));
    QTest::keyClick(view, Qt::Key_Tab);
    QVERIFY(!view->hasFocus());
}

void TestLicensePage::longTextScrolls()
{
    writeLicense(QByteArray("A line of the licence.\n").repeated(200));
    const ShownPage page;
    const QScrollBar *bar = page.view()->verticalScrollBar();
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), 0);
    const QImage picture = grabWidget(*page.view());
    const auto colour = [&](int x, int y) {
        return colourAt(picture, bar->mapTo(page.view(), QPointF(x, y)));
    };
    // A handle of 6 px above nothing, without arrows.
    QCOMPARE(colour(3, 20), themedColor(u"@INS_LINE2"_s));
    for (const QPoint &empty : { QPoint(8, 20), QPoint(3, 3), QPoint(3, bar->height() - 3) })
        QCOMPARE(colour(empty.x(), empty.y()), themedColor(u"@INS_PANEL"_s));
}

void TestLicensePage::longLineIsWrapped()
{
    writeLicense(longWord().toUtf8());
    ShownPage page;
    QVERIFY(!page.view()->verticalScrollBar()->isVisible());
    QCOMPARE(page.view()->horizontalScrollBar()->maximum(), 0);
    QVERIFY(fitsWindow(&page));
}

void TestLicensePage::answerChangesByClick()
{
    const ShownPage page;
    QVERIFY(!page.isAccepted());
    QVERIFY(page.decline()->isChecked());
    QSignalSpy changes(&page, &LicensePage::acceptedChanged);
    QTest::mouseClick(page.decline(), Qt::LeftButton);
    QTest::mouseClick(page.accept(), Qt::LeftButton);
    QVERIFY(page.isAccepted());
    QTest::mouseClick(page.decline(), Qt::LeftButton);
    QVERIFY(!page.isAccepted());
    QCOMPARE(changes, (QList<QVariantList> { { true }, { false } }));
}

QTEST_MAIN(TestLicensePage)
#include "tst_licensepage.moc"
