#include "app/applicationfonts.h"
#include "app/applicationicon.h"
#include "app/applicationsetup.h"
#include "product/product.h"
#include "support/stricttest.h"
#include "theme/thememanager.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QImage>
#include <QRawFont>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSides[] = { 16, 20, 24, 32, 40, 48, 64, 128, 256 };

/// The icon's drawing: its own size, and the rectangle in it that its shapes fill.
constexpr QSizeF kDrawing(735, 540);
constexpr QRectF kShapes(6, 30, 723, 480);

/// Weight that the font file itself gives its face, 1 to 1000.
int weightInFile(const QFont &font)
{
    constexpr int kWeightClass = 4; // place in the table "OS/2": after its version and an average
    const QByteArray table = QRawFont::fromFont(font).fontTable("OS/2");
    return table.size() < kWeightClass + 2 ? 0
                                           : qFromBigEndian<quint16>(table.data() + kWeightClass);
}

bool hasOurFonts()
{
    return QFontDatabase::families().contains(u"Space Grotesk"_s)
        || QFontDatabase::families().contains(u"JetBrains Mono"_s);
}

/// The smallest rectangle that holds every pixel that is not fully transparent.
QRect painted(const QImage &image)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

} // namespace

class TestApplicationSetup : public StrictTest
{
    Q_OBJECT

public:
    static void initMain();

private Q_SLOTS:
    void initTestCase();
    void identity();
    void application();
    void everyFontIsFound_data();
    void everyFontIsFound();
    void iconFillsItsSquare();
    void iconColours();
};

// The fonts may be installed on this machine, which would hide that the program does not find its
// own. So the test sees no font of the machine.
void TestApplicationSetup::initMain()
{
    static const QTemporaryDir folder;
    QFile configuration(folder.filePath(u"fonts.conf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write("<fontconfig/>") < 0)
        qFatal("Cannot write a font configuration");
    qputenv("FONTCONFIG_FILE", configuration.fileName().toLocal8Bit());
}

// First without the program's resources, which is not fatal.
void TestApplicationSetup::initTestCase()
{
    init();
    QVERIFY(!hasOurFonts());
    {
        Q_CLEANUP_RESOURCE(resources);
        const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(resources); });
        registerApplicationFonts();
        QVERIFY(!hasOurFonts());
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"Cannot open file.*varnel-logo\\.svg"_s));
        QVERIFY(applicationIcon().isNull());
    }
    ThemeManager::instance().setDarkMode(true);
    setUpApplication();
}

// What is installed on users' machines is found by these values, so they must not change by
// mistake.
void TestApplicationSetup::identity()
{
    QCOMPARE(Product::kUninstallKey, u"{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1"_s);
    QCOMPARE(Product::kName, u"Varnel Schematics"_s);
    QCOMPARE(Product::kExecutable, u"VarnelSolutions.exe"_s);
    QCOMPARE(Product::kPreferencesFolder, u"Varnel Schematics/Varnel Schematics"_s);
    QCOMPARE(Product::kRequiredBytes, qint64(230'686'720));
}

void TestApplicationSetup::application()
{
    QCOMPARE(QApplication::applicationName(), u"Varnel Schematics Setup"_s);
    QCOMPARE(QApplication::organizationName(), u"Varnel Solutions Team"_s);
    QVERIFY(!QApplication::quitOnLastWindowClosed());
    QCOMPARE(ThemeManager::instance().theme(), ThemeManager::Light);
    QList<QSize> sizes;
    for (const int side : kSides)
        sizes << QSize(side, side);
    QCOMPARE(QApplication::windowIcon().availableSizes(), sizes);
}

void TestApplicationSetup::everyFontIsFound_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("weight");
    QTest::newRow("Space Grotesk SemiBold") << u"Space Grotesk"_s << 600;
    QTest::newRow("Space Grotesk Bold") << u"Space Grotesk"_s << 700;
    QTest::newRow("JetBrains Mono Regular") << u"JetBrains Mono"_s << 400;
    QTest::newRow("JetBrains Mono Medium") << u"JetBrains Mono"_s << 500;
}

void TestApplicationSetup::everyFontIsFound()
{
    QFETCH(const QString, family);
    QFETCH(const int, weight);
    QFont font(family);
    font.setPixelSize(13);
    font.setWeight(QFont::Weight(weight));
    const QFontInfo info(font);
    QCOMPARE(info.family(), family);
    QCOMPARE(info.weight(), weight);
    QVERIFY(info.exactMatch());
    QCOMPARE(weightInFile(font), weight);

    // A character that the font lacks would be taken from another font.
    const QRawFont face = QRawFont::fromFont(font);
    QString missing;
    for (const QChar c : u"ABCXYZabcxyz0123456789 .,:;!?%&/\\()[]{}<>\"'+-=_@#*·×–—…’“”©"_s) {
        if (!face.supportsCharacter(c))
            missing += c;
    }
    QCOMPARE(missing, QString());
}

// As wide as the square, in the middle of its height.
void TestApplicationSetup::iconFillsItsSquare()
{
    for (const int side : kSides) {
        const QImage image = applicationIcon().pixmap(QSize(side, side), 1.0).toImage();
        const double scale = side / kDrawing.width();
        const double top = (side - kDrawing.height() * scale) / 2;
        const QRectF expected(kShapes.x() * scale, top + kShapes.y() * scale,
                              kShapes.width() * scale, kShapes.height() * scale);
        // A pixel that the edge only touches may be fully transparent after rounding.
        const QRect area = painted(image);
        QVERIFY(expected.toAlignedRect().contains(area));
        QVERIFY(area.contains(expected.toAlignedRect().adjusted(1, 1, -1, -1)));
        QCOMPARE(area.left(), side - 1 - area.right());
        QCOMPARE(area.top(), side - 1 - area.bottom());
    }
}

void TestApplicationSetup::iconColours()
{
    const QImage image = applicationIcon().pixmap(QSize(256, 256), 1.0).toImage();
    const double scale = 256 / kDrawing.width();
    const double top = (256 - kDrawing.height() * scale) / 2;
    const auto at = [&](double x, double y) {
        return image.pixelColor(int(x * scale), int(top + y * scale)).name(QColor::HexArgb);
    };
    QCOMPARE(at(60, 270), u"#ff0e1730"_s);
    QCOMPARE(at(675, 270), u"#ff545454"_s);
    QCOMPARE(at(330, 310), u"#ff064cad"_s);
    QCOMPARE(at(462, 200), u"#ffff3131"_s);
    QCOMPARE(at(250, 60), u"#00000000"_s);
}

QTEST_MAIN(TestApplicationSetup)
#include "tst_applicationsetup.moc"
