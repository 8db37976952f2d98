// What is installed on users' machines is found by these values, so they must not change by
// mistake.
#include "product/product.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestProduct : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identity();
};

void TestProduct::identity()
{
    QCOMPARE(Product::kUninstallKey, u"{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1"_s);
    QCOMPARE(Product::kName, u"Varnel Schematics"_s);
    QCOMPARE(Product::kExecutable, u"VarnelSolutions.exe"_s);
    QCOMPARE(Product::kPreferencesFolder, u"Varnel Schematics/Varnel Schematics"_s);
    QCOMPARE(Product::kRequiredBytes, qint64(230'686'720));
}

QTEST_APPLESS_MAIN(TestProduct)
#include "tst_product.moc"
