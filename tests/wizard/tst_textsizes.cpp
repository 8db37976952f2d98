// That no text is cut with the font of Windows: 9 points of Segoe UI, which is not free. Open Sans
// stands for it, the letters of which are as wide or wider (the capital W alone is narrower, by a
// fiftieth of a pixel) and the lines as high or higher. The window's scale comes from outside.

#include "app/applicationfonts.h"
#include "pages/lightthemetest.h"
#include "wizard/runplan.h"
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
    QTest::addColumn<Scene>("scene");
    for (const Scene &scene : scenes())
        QTest::newRow(scene.name) << scene;
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
    QFETCH(const Scene, scene);
    WizardScene world;
    world.enter(scene);
    QTRY_COMPARE(cutTexts(world.window()), QStringList()); // after the layouts
    if (scene.page == runPlan(scene.mode).progressPage) {
        world.fail();
        QTRY_COMPARE(cutTexts(world.window()), QStringList());
    }
}

QTEST_MAIN(TestTextSizes)
#include "tst_textsizes.moc"
