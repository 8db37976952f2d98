#include "bundle/bundle.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QtEndian>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray littleEndian(quint64 number, qsizetype bytes)
{
    QByteArray text(8, '\0');
    qToLittleEndian(number, text.data());
    return text.first(bytes);
}

QByteArray marker(quint64 offset, quint64 size)
{
    return "VARNEL-ENGINE-1:" + littleEndian(offset, 8) + littleEndian(size, 8)
        + QByteArray(32, 's');
}

/// The head of a Windows program whose certificate table is at `place`.
QByteArray windowsProgram(quint32 place, quint32 size)
{
    QByteArray head(0x200, '\0');
    head.replace(0, 2, "MZ");
    head.replace(0x3c, 4, littleEndian(0x80, 4));
    head.replace(0x80, 4, QByteArray("PE\0\0", 4));
    head.replace(0x98, 2, littleEndian(0x20b, 2));
    head.replace(0x98 + 112 + 32, 4, littleEndian(place, 4));
    head.replace(0x98 + 112 + 36, 4, littleEndian(size, 4));
    return head;
}

} // namespace

class TestBundle : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void markerIsRead();
    void thisProgramCarriesNothing();
    void completeness_data();
    void completeness();
    void completenessOfTheLargest();
};

void TestBundle::markerIsRead()
{
    const std::optional<Bundle> bundle = parseBundleMarker(marker(0x123456789a, 700'000'001));
    QVERIFY(bundle);
    QCOMPARE(bundle->offset, 0x123456789a);
    QCOMPARE(bundle->size, 700'000'001);
    QCOMPARE(bundle->sha256, QByteArray(32, 's'));
    QVERIFY(!parseBundleMarker(marker(0, 0)));
    // A half-written marker still counts as one: the wizard has to report damage, not simulate.
    QVERIFY(parseBundleMarker(marker(0, 5)));
    QVERIFY(parseBundleMarker(marker(5, 0)));
}

void TestBundle::thisProgramCarriesNothing()
{
    QVERIFY(!carriedBundle());
}

void TestBundle::completeness_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<bool>("complete");
    const QByteArray plain = "\x7f"
                             "ELF";
    // The engine is 1,000 bytes long.
    QTest::newRow("to the last byte") << plain << qint64(6000) << qint64(5000) << true;
    QTest::newRow("last byte missing") << plain << qint64(5999) << qint64(5000) << false;
    QTest::newRow("more behind it") << plain << qint64(9000) << qint64(5000) << true;
    const QByteArray wasSigned = windowsProgram(6008, 500);
    QTest::newRow("with its signature") << wasSigned << qint64(6508) << qint64(5000) << true;
    QTest::newRow("signature cut off") << wasSigned << qint64(6507) << qint64(5000) << false;
    QTest::newRow("no signature") << windowsProgram(0, 0) << qint64(6000) << qint64(5000) << true;
    QTest::newRow("header behind the end")
        << QByteArray("MZ" + QByteArray(58, '\0') + "\xff\xff\xff\x7f") << qint64(6000)
        << qint64(5000) << true;
    QTest::newRow("marker without a place") << plain << qint64(6000) << qint64(0) << false;
}

void TestBundle::completeness()
{
    QFETCH(QByteArray, head);
    QFETCH(qint64, length);
    QFETCH(qint64, offset);
    const Sandbox sandbox;
    const QString path = sandbox.write(u"program"_s, head);
    QVERIFY(QFile::resize(path, length));
    QTEST(isComplete(path, { .offset = offset, .size = 1000, .sha256 = {} }), "complete");
}

void TestBundle::completenessOfTheLargest()
{
    // The largest engine that tools/bundle takes, and a signature. The file has holes in it.
    constexpr quint32 kOffset = 20'000'000;
    constexpr quint32 kSize = 1'900'000'000;
    constexpr quint32 kCertificates = 9000;
    const std::optional<Bundle> bundle = parseBundleMarker(marker(kOffset, kSize));
    QVERIFY(bundle);
    const Sandbox sandbox;
    const QString path =
        sandbox.write(u"program"_s, windowsProgram(kOffset + kSize, kCertificates));
    const qint64 length = qint64(kOffset) + kSize + kCertificates;
    QVERIFY(QFile::resize(path, length));
    QVERIFY(isComplete(path, *bundle));
    QVERIFY(QFile::resize(path, length - 1));
    QVERIFY(!isComplete(path, *bundle));
}

QTEST_GUILESS_MAIN(TestBundle)
#include "tst_bundle.moc"
