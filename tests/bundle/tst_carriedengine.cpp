#include "bundle/carriedengine.h"
#include "bundlefile.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>

#include <sys/resource.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

// Some pieces and a part of one.
constexpr qsizetype kSize = 3 * 256 * 1024 + 5;

const QString kDamaged = u"This setup file is damaged. Please download it again."_s;

} // namespace

class TestCarriedEngine : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void unpacks();
    void goesBeforeTheObject();
    void nothingIsDoneBeforeItIsStarted();
    void endsWhileItUnpacks();
    void faults_data();
    void faults();
    void refusedFolder();
    void noRoom();

private:
    static void verifyFailure(const BundleFile &file, const Sandbox &sandbox,
                              const QString &reason = {});
};

void TestCarriedEngine::unpacks()
{
    const Sandbox sandbox;
    const BundleFile file(sandbox, kSize);
    {
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
        QVERIFY(QFileInfo(engine.path()).isExecutable());
        QVERIFY(engine.path().startsWith(sandbox.tempFolder()));
    }
    QCOMPARE(QDir(sandbox.tempFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void TestCarriedEngine::goesBeforeTheObject()
{
    const Sandbox sandbox;
    const BundleFile file(sandbox, kSize);
    CarriedEngine engine(file.path, file.bundle);
    engine.start();
    engine.hurry();
    QTRY_VERIFY(engine.isFinished());
    engine.remove();
    QVERIFY(QDir(sandbox.tempFolder()).isEmpty());
}

void TestCarriedEngine::nothingIsDoneBeforeItIsStarted()
{
    const Sandbox sandbox;
    const BundleFile file(sandbox, kSize);
    CarriedEngine engine(file.path, file.bundle);
    engine.hurry();
    QTest::qWait(0);
    QVERIFY(!engine.isFinished());
    QVERIFY(QDir(sandbox.tempFolder()).isEmpty());
}

void TestCarriedEngine::endsWhileItUnpacks()
{
    const Sandbox sandbox;
    // So large that it is not done when the object goes.
    const BundleFile file(sandbox, 64 * 1024 * 1024);
    {
        CarriedEngine engine(file.path, file.bundle);
        engine.start();
        QTRY_VERIFY(!QDir(sandbox.tempFolder()).isEmpty());
        QVERIFY(!engine.isFinished());
    }
    QVERIFY(QDir(sandbox.tempFolder()).isEmpty());
}

void TestCarriedEngine::faults_data()
{
    QTest::addColumn<qint64>("altered"); // counted from the engine's first byte
    QTest::addColumn<qint64>("length"); // that the file is cut to
    QTest::newRow("first byte altered") << qint64(0) << qint64(-1);
    QTest::newRow("byte in the middle altered") << qint64(kSize / 2) << qint64(-1);
    QTest::newRow("last byte altered") << qint64(kSize - 1) << qint64(-1);
    QTest::newRow("last byte missing") << qint64(-1) << qint64(kSize - 1);
    QTest::newRow("engine missing") << qint64(-1) << qint64(0);
}

void TestCarriedEngine::faults()
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
    QCOMPARE(engine.error(), kDamaged);
    QVERIFY(!QFileInfo::exists(engine.path())); // what was written is no use, and takes room
}

/// A sentence with the system's words in the middle.
void TestCarriedEngine::verifyFailure(const BundleFile &file, const Sandbox &sandbox,
                                      const QString &reason)
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

void TestCarriedEngine::refusedFolder()
{
    const Sandbox sandbox;
    QVERIFY(QDir().rmdir(sandbox.tempFolder()));
    sandbox.write(u"temp"_s, "a file in its place");
    verifyFailure(BundleFile(sandbox, kSize), sandbox);
}

void TestCarriedEngine::noRoom()
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
    QVERIFY(QDir(sandbox.tempFolder()).isEmpty());
#endif
}

QTEST_GUILESS_MAIN(TestCarriedEngine)
#include "tst_carriedengine.moc"
