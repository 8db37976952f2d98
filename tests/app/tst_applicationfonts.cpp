#include "app/applicationfonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QRawFont>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Weight that the font file itself gives its face, 1 to 1000.
int weightInFile(const QFont &font)
{
    constexpr int kWeightClass = 4; // place in the table "OS/2": after its version and an average
    const QByteArray table = QRawFont::fromFont(font).fontTable("OS/2");
    return table.size() < kWeightClass + 2 ? 0
                                           : qFromBigEndian<quint16>(table.data() + kWeightClass);
}

} // namespace

class TestApplicationFonts : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private Q_SLOTS:
    void initTestCase();
    void init();
    void everyFaceIsTheOneAskedFor_data();
    void everyFaceIsTheOneAskedFor();
    void everyCharacterOfTheTextsIsThere_data();
    void everyCharacterOfTheTextsIsThere();
};

// The fonts may well be installed on this machine, which would hide that ours are not found. So
// none of the machine's is seen here.
void TestApplicationFonts::initMain()
{
    static const QTemporaryDir folder;
    QFile configuration(folder.filePath(u"fonts.conf"_s));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write("<fontconfig/>") < 0)
        qFatal("Cannot write a font configuration");
    qputenv("FONTCONFIG_FILE", configuration.fileName().toLocal8Bit());
}

void TestApplicationFonts::initTestCase()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const auto ours = [] {
        return QStringList { u"Space Grotesk"_s, u"JetBrains Mono"_s, u"JetBrains Mono Medium"_s }
            .filter(QRegularExpression(u"^("_s + QFontDatabase::families().join(u'|') + u")$"_s));
    };
    QCOMPARE(ours(), QStringList());
    {
        // Fonts that cannot be loaded are done without.
        Q_CLEANUP_RESOURCE(resources);
        const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(resources); });
        registerApplicationFonts();
        QCOMPARE(ours(), QStringList());
    }
    registerApplicationFonts();
    QVERIFY(ours().contains(u"Space Grotesk"_s));
    QVERIFY(ours().contains(u"JetBrains Mono"_s));
}

void TestApplicationFonts::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestApplicationFonts::everyFaceIsTheOneAskedFor_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("weight");
    QTest::newRow("Space Grotesk SemiBold") << u"Space Grotesk"_s << 600;
    QTest::newRow("Space Grotesk Bold") << u"Space Grotesk"_s << 700;
    QTest::newRow("JetBrains Mono Regular") << u"JetBrains Mono"_s << 400;
    QTest::newRow("JetBrains Mono Medium") << u"JetBrains Mono"_s << 500;
}

void TestApplicationFonts::everyFaceIsTheOneAskedFor()
{
    QFETCH(const QString, family);
    QFETCH(const int, weight);
    for (const int pixels : { 9, 13, 27 }) {
        QFont font(family);
        font.setPixelSize(pixels);
        font.setWeight(QFont::Weight(weight));
        const QFontInfo info(font);
        QCOMPARE(info.family(), family);
        QCOMPARE(info.weight(), weight);
        QCOMPARE(info.pixelSize(), pixels);
        QCOMPARE(info.style(), QFont::StyleNormal);
        QVERIFY(info.exactMatch());
        QCOMPARE(weightInFile(font), weight);
    }
}

void TestApplicationFonts::everyCharacterOfTheTextsIsThere_data()
{
    everyFaceIsTheOneAskedFor_data();
}

// Else another font would step in for it and stand out.
void TestApplicationFonts::everyCharacterOfTheTextsIsThere()
{
    QFETCH(const QString, family);
    QFETCH(const int, weight);
    QFont font(family);
    font.setWeight(QFont::Weight(weight));
    const QRawFont face = QRawFont::fromFont(font);
    QString missing;
    for (const QChar c : u"ABCXYZabcxyz0123456789 .,:;!?%&/\\()[]{}<>\"'+-=_@#*·×–—…’“”©"_s) {
        if (!face.supportsCharacter(c))
            missing += c;
    }
    QCOMPARE(missing, QString());
}

QTEST_MAIN(TestApplicationFonts)
#include "tst_applicationfonts.moc"
