// That no text is cut with the font of Windows: 9 points of Segoe UI, which is not free. Open Sans
// stands for it, the letters of which are as wide or wider (the capital W alone is narrower, by a
// fiftieth of a pixel) and the lines as high or higher. The window's scale comes from outside.

#include "app/applicationfonts.h"
#include "pages/lightthemetest.h"
#include "wizard/wizardscene.h"

#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestTextSizes : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    static void initMain() { qputenv("VARNEL_REDUCED_MOTION", "1"); }
    void initTestCase();
    void nothingIsCut_data();
    void nothingIsCut();
};

void TestTextSizes::initTestCase()
{
    registerApplicationFonts();
    const QFont font(u"Open Sans"_s, 9);
    QCOMPARE(QFontInfo(font).family(), u"Open Sans"_s);
    QApplication::setFont(font);
}

void TestTextSizes::nothingIsCut_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<PageId>("page");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *name, RunMode mode, PageId page, const QString &failure = {}) {
        QTest::newRow(name) << mode << page << failure;
    };
    row("welcome", RunMode::Install, PageId::Welcome);
    row("license", RunMode::Install, PageId::License);
    row("system check", RunMode::Install, PageId::SystemCheck);
    row("destination", RunMode::Install, PageId::Destination);
    row("tasks", RunMode::Install, PageId::Tasks);
    row("ready", RunMode::Install, PageId::Ready);
    row("installing", RunMode::Install, PageId::Installing);
    row("failed", RunMode::Install, PageId::Installing,
        u"A fatal error occurred during installation.  There is not enough space on the disk to "
        "install the program."_s);
    row("finished", RunMode::Install, PageId::Finished);
    row("update available", RunMode::Update, PageId::UpdateAvailable);
    row("ready to update", RunMode::Update, PageId::ReadyToUpdate);
    row("updating", RunMode::Update, PageId::Updating);
    row("updated", RunMode::Update, PageId::UpdateFinished);
    row("removal", RunMode::Uninstall, PageId::ConfirmUninstall);
    row("removing", RunMode::Uninstall, PageId::Uninstalling);
    row("removed", RunMode::Uninstall, PageId::UninstallComplete);
}

/// How large a label or a button has to be for its text.
QSize needed(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    if (label && label->wordWrap())
        return { 0, label->heightForWidth(label->width()) };
    return widget.sizeHint();
}

/// What does not have the room that it needs.
QStringList cutTexts(const QWidget &window)
{
    QStringList result;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (!widget->isVisible() || text.isEmpty())
            continue;
        const QSize size = needed(*widget);
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (place.width() < size.width() || place.height() < size.height()
            || !window.rect().contains(place))
            result += u"%1: %2 x %3 of %4 x %5"_s.arg(text)
                          .arg(place.width())
                          .arg(place.height())
                          .arg(size.width())
                          .arg(size.height());
    }
    return result;
}

void TestTextSizes::nothingIsCut()
{
    QFETCH(const RunMode, mode);
    QFETCH(const PageId, page);
    QFETCH(const QString, failure);
    WizardScene scene;
    scene.open(mode);
    scene.goTo(page);
    if (!failure.isEmpty())
        scene.fail(failure);
    QTRY_COMPARE(cutTexts(scene.window()), QStringList()); // after the layouts
}

QTEST_MAIN(TestTextSizes)
#include "tst_textsizes.moc"
