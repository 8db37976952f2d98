#include "bundle/carriedengine.h"
#include "bundlefile.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QtEndian>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>

#include <sys/resource.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

// Some pieces and a part of one.
constexpr qsizetype kSize = 3 * 256 * 1024 + 5;

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

/// What the engine says when it cannot be unpacked: a sentence with the system's words in the
/// middle.
void verifyFailure(const BundleFile &file, const Sandbox &sandbox, const QString &reason = {})
{
    CarriedEngine engine(file.path, file.bundle);
    engine.start();
    engine.hurry();
    QTRY_VERIFY(engine.isFinished());
    const QString end = u"It needs 1 MB in %1."_s;
    const QString folder = QDir::toNativeSeparators(sandbox.tempFolder());
    QVERIFY2(engine.error().startsWith(u"The setup engine cannot be unpacked: "_s + reason)
                 && engine.error().endsWith(end.arg(folder)),
             qPrintable(engine.error()));
}

} // namespace

// The setup engine behind the program that people download.
class TestBundle : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void markerIsRead();
    void completeness_data();
    void completeness();
    void completenessOfTheLargest();
    void unpacks();
    void endsWhileItUnpacks();
    void faults_data();
    void faults();
    void refusedFolder();
    void noRoom();
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
    QVERIFY(!carriedBundle()); // as tools/bundle has not filled in that of this program
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

void TestBundle::unpacks()
{
    const Sandbox sandbox;
    const BundleFile file(sandbox, kSize);
    CarriedEngine engine(file.path, file.bundle);
    QSignalSpy finished(&engine, &CarriedEngine::finished);
    engine.start();
    engine.start();
    QVERIFY(!engine.isFinished());
    QTRY_VERIFY(engine.isFinished());
    QCOMPARE(engine.error(), QString());
    QCOMPARE(finished.size(), 1);
    QFile copy(engine.path());
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QVERIFY(copy.readAll() == file.engine);
    copy.close();
    QVERIFY(QFileInfo(engine.path()).isExecutable());
    QVERIFY(engine.path().startsWith(sandbox.tempFolder()));
    engine.remove(); // as before the object goes, when the session ends
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestBundle::endsWhileItUnpacks()
{
    const Sandbox sandbox;
    // So large that it is not done when the object goes.
    const BundleFile file(sandbox, 64 * 1024 * 1024);
    CarriedEngine engine(file.path, file.bundle);
    engine.start();
    QTRY_VERIFY(!sandbox.tempFiles().isEmpty());
    engine.remove();
    QVERIFY(!engine.error().isEmpty()); // it did not go on to the end
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestBundle::faults_data()
{
    QTest::addColumn<qint64>("altered"); // counted from the engine's first byte
    QTest::addColumn<qint64>("length"); // that the file is cut to
    QTest::newRow("first byte altered") << qint64(0) << qint64(-1);
    QTest::newRow("last byte altered") << qint64(kSize - 1) << qint64(-1);
    QTest::newRow("last byte missing") << qint64(-1) << qint64(kSize - 1);
}

void TestBundle::faults()
{
    QFETCH(qint64, altered);
    QFETCH(qint64, length);
    const Sandbox sandbox;
    const BundleFile file(sandbox, kSize);
    if (altered >= 0)
        file.alter(file.bundle.offset + altered);
    if (length >= 0)
        QVERIFY(QFile::resize(file.path, file.bundle.offset + length));
    CarriedEngine engine(file.path, file.bundle);
    engine.start();
    engine.hurry();
    QTRY_VERIFY(engine.isFinished());
    QCOMPARE(engine.error(), u"This setup file is damaged. Please download it again."_s);
    QVERIFY(!QFileInfo::exists(engine.path())); // what was written is no use, and takes room
}

void TestBundle::refusedFolder()
{
    const Sandbox sandbox;
    QVERIFY(QDir().rmdir(sandbox.tempFolder()));
    sandbox.write(u"temp"_s, "a file in its place");
    verifyFailure(BundleFile(sandbox, kSize), sandbox);
}

void TestBundle::noRoom()
{
#ifdef Q_OS_WIN
    QSKIP("A limit for the size of files is what other systems have.");
#else
    const Sandbox sandbox;
    const auto signalBefore = signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto restore = qScopeGuard([&] {
        setrlimit(RLIMIT_FSIZE, &before);
        signal(SIGXFSZ, signalBefore);
    });
    const BundleFile file(sandbox, kSize); // written before the limit is set
    rlimit limit = before;
    limit.rlim_cur = kSize - 1;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
    verifyFailure(file, sandbox, u"There is no room on the disk."_s);
    QCOMPARE(sandbox.tempFiles(), QStringList());
#endif
}

QTEST_GUILESS_MAIN(TestBundle)
#include "tst_bundle.moc"
