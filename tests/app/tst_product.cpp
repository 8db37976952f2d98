// The product's name and figures stand in more than one place: in the project file, in the stand-in
// engine, and as text beside the number it shows. This holds them together.
#include "product/product.h"
#include "support/standinengine/product.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString text(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace

class TestProduct : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void identity_data();
    void identity();
    void versionIsThatOfTheProject();
    void standInIsOfTheSameProduct();
    void requiredSpaceTellsTheRequiredBytes();
};

void TestProduct::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestProduct::identity_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, QStringView shown, const QString &expected) {
        QTest::newRow(name) << shown.toString() << expected;
    };
    row("name", Product::kName, u"Varnel Schematics"_s);
    row("publisher", Product::kPublisher, u"Varnel Solutions Team"_s);
    row("publisher's notice", Product::kPublisherNotice, u"© 2026 Varnel Solutions Team"_s);
    row("executable", Product::kExecutable, u"VarnelSolutions.exe"_s);
    row("set-up program", Product::kSetupName, u"Varnel Schematics Setup"_s);
    row("uninstall key", Product::kUninstallKey, u"{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1"_s);
}

void TestProduct::identity()
{
    QFETCH(const QString, shown);
    QFETCH(const QString, expected);
    QCOMPARE(shown, expected);
}

void TestProduct::versionIsThatOfTheProject()
{
    QCOMPARE(Product::kVersion.toString(), QStringLiteral(PROJECT_VERSION));
    QCOMPARE(Product::kVersion.toString(), u"1.6.9"_s);
}

void TestProduct::standInIsOfTheSameProduct()
{
    QCOMPARE(text(standin::product::kName), Product::kName.toString());
    QCOMPARE(text(standin::product::kVersion), Product::kVersion.toString());
    QCOMPARE(text(standin::product::kPublisher), Product::kPublisher.toString());
    QCOMPARE(text(standin::product::kMainExecutable), Product::kExecutable.toString());
    for (const std::string_view key : standin::product::kRegistryKeys)
        QVERIFY2(text(key).endsWith(Product::kUninstallKey), key.data());
}

void TestProduct::requiredSpaceTellsTheRequiredBytes()
{
    QCOMPARE(Product::kRequiredBytes, qint64(230'686'720));
    QCOMPARE(QLocale::c().formattedDataSize(Product::kRequiredBytes, 0,
                                            QLocale::DataSizeTraditionalFormat),
             Product::kRequiredSpace.toString());
}

QTEST_APPLESS_MAIN(TestProduct)
#include "tst_product.moc"
