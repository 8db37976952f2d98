// What the outside world knows us by must not change with a slip of the hand: an installed copy is
// found by its key, the application by its name.
#include "product/product.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestProduct : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void identity_data();
    void identity();
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
    row("version", Product::kVersion, u"1.6.9"_s);
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

void TestProduct::requiredSpaceTellsTheRequiredBytes()
{
    QCOMPARE(Product::kRequiredBytes, qint64(230'686'720));
    QCOMPARE(QLocale::c().formattedDataSize(Product::kRequiredBytes, 0,
                                            QLocale::DataSizeTraditionalFormat),
             Product::kRequiredSpace.toString());
}

QTEST_APPLESS_MAIN(TestProduct)
#include "tst_product.moc"
