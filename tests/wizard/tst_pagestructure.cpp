// Compares every page with a record of what stands where: tests/wizard/structure/<page>.txt. After
// a deliberate change, VARNEL_RECORD=1 writes the records anew instead; their difference is then
// what has changed on screen.

#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/lightthemetest.h"
#include "support/drawing.h"
#include "theme/thememanager.h"
#include "widgets/progresstrack.h"
#include "widgets/sealcheck.h"
#include "wizard/wizardscene.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPatience = 10'000; // ms
constexpr int kSmallestArea = 10; // px; the softened edges of round shapes are smaller

/// Stands for the font of the system, which is another one on every machine.
const QString kSystemFont = u"System"_s;

constexpr char kFontConfiguration[] = R"(<fontconfig><match target="pattern">
    <edit name="hinting" mode="assign"><bool>false</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintnone</const></edit>
</match></fontconfig>)";

/// A widget with what is drawn and what else lies in it.
struct Entry
{
    QRectF bounds; ///< in the window
    QString line; ///< of the record
    bool isWidget = false;
    QList<Entry> parts = {};
};

QString number(double value)
{
    return QString::number(std::round(value * 10.0) / 10.0);
}

QString place(const QRectF &bounds)
{
    return u"%1,%2 %3x%4"_s.arg(number(bounds.x()), number(bounds.y()), number(bounds.width()),
                                number(bounds.height()));
}

QString quoted(QString text)
{
    return u'"' + text.replace(u'\n', u"\\n"_s) + u'"';
}

QString name(QRgb colour)
{
    return QColor::fromRgba(colour).name(qAlpha(colour) == 255 ? QColor::HexRgb : QColor::HexArgb);
}

QString names(QRgb light, QRgb dark)
{
    return light == dark ? name(light) : name(light) + u'/' + name(dark);
}

Entry entryOf(const QWidget *widget)
{
    Entry entry { QRectF(widget->mapTo(widget->window(), QPoint()), widget->size()), {}, true };
    entry.line = QString::fromLatin1(widget->metaObject()->className());
    if (!widget->objectName().isEmpty())
        entry.line += u'#' + widget->objectName();
    entry.line += u' ' + place(entry.bounds);
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        entry.line += u' ' + quoted(button->text());
        if (button->isChecked())
            entry.line += u" checked";
    }
    if (!widget->isEnabled())
        entry.line += u" disabled";
    for (const QObject *child : widget->children()) {
        const auto *part = qobject_cast<const QWidget *>(child);
        if (part && part->isVisible())
            entry.parts.append(entryOf(part));
    }
    return entry;
}

Entry entryOf(const DrawnText &light, const DrawnText &dark)
{
    const QFont &font = light.font;
    const int size = font.pixelSize() > 0 ? font.pixelSize() : QFontInfo(font).pixelSize();
    const QString place = number(light.baseline.x()) + u',' + number(light.baseline.y());
    const QString line =
        u"text %1 %2, %3 %4px %5, %6"_s.arg(place, quoted(light.text.trimmed()), font.family())
            .arg(size)
            .arg(font.weight())
            .arg(names(light.colour.rgba(), dark.colour.rgba()));
    return { QRectF(light.baseline, QSizeF(1, 1)), line };
}

Entry entryOf(const Area &area, double ratio)
{
    const QRectF bounds(QPointF(area.bounds.topLeft()) / ratio, QSizeF(area.bounds.size()) / ratio);
    return { bounds, u"area %1 %2"_s.arg(place(bounds), names(area.light, area.dark)) };
}

/// The innermost widget of the tree that `bounds` lies in.
Entry &innermost(Entry &tree, const QRectF &bounds)
{
    for (auto it = tree.parts.rbegin(); it != tree.parts.rend(); ++it) {
        if (it->isWidget && it->bounds.contains(bounds))
            return innermost(*it, bounds);
    }
    return tree;
}

/// Scaled pictures have fringes, in which two machines may differ by a hair.
bool isFringe(const Entry &area, const Entry &widget)
{
    return qMin(area.bounds.width(), area.bounds.height()) < 2.0
        && (widget.line.startsWith("AnimatedMark"_L1) || widget.line.startsWith("GifBadge"_L1));
}

void write(const Entry &entry, const QString &indent, QStringList &lines)
{
    lines.append(indent + entry.line);
    for (const Entry &part : entry.parts)
        write(part, indent + u"  "_s, lines);
}

/// A page in one of the themes.
struct Look
{
    Entry widgets;
    Drawing drawing;
    Drawing fineDrawing; ///< at two device pixels per pixel
};

/// True when all visible widgets of that class in the window satisfy `isDone`.
template <typename Widget, typename Condition>
bool all(const QWidget &window, const Condition &isDone)
{
    const QList<Widget *> widgets = window.findChildren<Widget *>();
    return std::all_of(widgets.begin(), widgets.end(), [&isDone](const Widget *widget) {
        return !widget->isVisible() || isDone(widget);
    });
}

/// True when everything has appeared that is on its way.
bool isAtRest(const QWidget &window)
{
    return all<SystemCheckPage::CheckRow>(window, [](auto *row) { return row->reveal() == 1.0; })
        && all<ProgressTrack>(window, [](auto *bar) { return bar->value() == bar->target(); })
        && all<SealCheck>(window, [](auto *seal) { return seal->checkProgress() == 1.0; });
}

QStringList recordOf(const Look &light, const Look &dark)
{
    Entry tree = light.widgets;
    for (qsizetype i = 0; i < light.drawing.texts.size(); ++i) {
        if (light.drawing.texts[i].text.trimmed().isEmpty())
            continue;
        const Entry text = entryOf(light.drawing.texts[i], dark.drawing.texts[i]);
        innermost(tree, text.bounds).parts.append(text);
    }
    for (const Area &area : areas(light.drawing.picture, dark.drawing.picture, kSmallestArea)) {
        const Entry entry = entryOf(area, 1.0);
        Entry &widget = innermost(tree, entry.bounds);
        if (!isFringe(entry, widget))
            widget.parts.append(entry);
    }
    QStringList lines;
    write(tree, {}, lines);

    lines.append(u"At two device pixels per pixel"_s);
    for (const Area &area :
         areas(light.fineDrawing.picture, dark.fineDrawing.picture, 4 * kSmallestArea)) {
        const Entry entry = entryOf(area, 2.0);
        if (!isFringe(entry, innermost(tree, entry.bounds)))
            lines.append(u"  "_s + entry.line);
    }
    return lines;
}

/// What the window looks like in a theme that comes up while it is shown.
Look look(WizardScene &world, bool dark)
{
    ThemeManager::instance().setDarkMode(dark);
    bool hasTurned = false; // the event loop, which finds everything its place
    QTimer::singleShot(0, &world.window(), [&] { hasTurned = true; });
    if (!QTest::qWaitFor([&] { return hasTurned && isAtRest(world.window()); }, kPatience))
        qFatal("The page does not come to rest");
    return { entryOf(&world.window()), draw(world.window(), 1.0), draw(world.window(), 2.0) };
}

} // namespace

class TestPageStructure : public LightThemeTest
{
    Q_OBJECT

public:
    static void initMain();

private Q_SLOTS:
    void initTestCase();
    void page_data();
    void page();
    void everyRecordHasItsPage();
};

// Nothing of this machine's fonts is seen here, nor of how it likes letters to be fitted to pixels.
void TestPageStructure::initMain()
{
    static const QTemporaryDir folder;
    QFile configuration(folder.filePath(u"fonts.conf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write(kFontConfiguration) < 0)
        qFatal("Cannot write a font configuration");
    configuration.close();
    qputenv("FONTCONFIG_FILE", configuration.fileName().toLocal8Bit());
    for (const char *variable : { "QT_FONT_DPI", "QT_STYLE_OVERRIDE" })
        qunsetenv(variable);
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("VARNEL_REDUCED_MOTION", "1");
}

void TestPageStructure::initTestCase()
{
    registerApplicationFonts();
    QFont font(kSystemFont);
    font.setPixelSize(13);
    QFont::insertSubstitution(kSystemFont, u"Space Grotesk"_s);
    QApplication::setFont(font);
}

void TestPageStructure::page_data()
{
    QTest::addColumn<Scene>("scene");
    for (const Scene &scene : scenes())
        QTest::newRow(scene.name) << scene;
}

void TestPageStructure::page()
{
    QFETCH(const Scene, scene);
    WizardScene world;
    world.enter(scene);
    const Look light = look(world, false);
    ThemeManager::instance().setDarkMode(true);
    if (scene.page == PageId::Ready)
        world.enter(scene); // the summary keeps the colours of when it was made
    const Look dark = look(world, true);
    QCOMPARE(dark.drawing.texts.size(), light.drawing.texts.size());
    const QStringList lines = recordOf(light, dark);

    const QString folder = QFINDTESTDATA("structure");
    QVERIFY(!folder.isEmpty());
    QFile record(folder + u'/' + QString::fromLatin1(QTest::currentDataTag()) + u".txt");
    if (qEnvironmentVariableIntValue("VARNEL_RECORD") == 1) {
        QVERIFY(record.open(QIODevice::WriteOnly));
        record.write((lines.join(u'\n') + u'\n').toUtf8());
        record.close();
    }
    QVERIFY2(record.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(record.fileName()));
    const QStringList recorded = QString::fromUtf8(record.readAll()).trimmed().split(u'\n');
    for (qsizetype i = 0; i < qMin(lines.size(), recorded.size()); ++i)
        QCOMPARE(lines[i], recorded[i]);
    QCOMPARE(lines.size(), recorded.size());
}

void TestPageStructure::everyRecordHasItsPage()
{
    QStringList names;
    for (const Scene &scene : scenes())
        names.append(QLatin1StringView(scene.name) + ".txt"_L1);
    names.sort();
    QCOMPARE(QDir(QFINDTESTDATA("structure")).entryList(QDir::Files, QDir::Name), names);
}

QTEST_MAIN(TestPageStructure)
#include "tst_pagestructure.moc"
