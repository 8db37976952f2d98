#include "files/guardedfile.h"
#include "files/programsinuse.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// Whether files and programs are in use, which Windows alone can tell and prevent.
class TestGuardedFile : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void missing();
    void nobodyCanExchangeIt();
    void notWhileItIsWritten();
    void programsInUse();
};

void TestGuardedFile::missing()
{
    const Sandbox sandbox;
    GuardedFile file;
    QVERIFY(file.hold(sandbox.write(u"there.exe"_s, "program")));
    QVERIFY(!file.hold(sandbox.path(u"missing.exe"_s)));
    QVERIFY(!file.isHeld());
    QVERIFY(!file.errorString().isEmpty());
}

void TestGuardedFile::nobodyCanExchangeIt()
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"set up.exe"_s, "program");
    GuardedFile file;
    QVERIFY(file.hold(path));
    QCOMPARE(sandbox.read(u"set up.exe"_s), "program");
#ifdef Q_OS_WIN
    QVERIFY(!QFile(path).open(QIODevice::ReadWrite));
    QVERIFY(!QFile::remove(path));
    QVERIFY(!QFile::rename(path, path + ".old"_L1));
#endif
    file.release();
    QVERIFY(!file.isHeld());
    QVERIFY(QFile::remove(path));
}

void TestGuardedFile::notWhileItIsWritten()
{
#ifndef Q_OS_WIN
    QSKIP("Only Windows knows who writes a file.");
#endif
    const Sandbox sandbox;
    QFile written(sandbox.write(u"setup.exe"_s, "program"));
    QVERIFY(written.open(QIODevice::ReadWrite));
    GuardedFile file;
    QVERIFY(!file.hold(written.fileName()));
}

void TestGuardedFile::programsInUse()
{
#ifndef Q_OS_WIN
    QSKIP("Only Windows knows which program runs.");
#endif
    const Sandbox sandbox;
    const QString folder = sandbox.path(u"app"_s);
    sandbox.write(u"app/other.exe"_s, "program");
    sandbox.write(u"app/notes.txt"_s, "text");
    QVERIFY(QDir(folder).mkdir(u"bin"_s));
    const QString program = folder + "/bin/Running.EXE"_L1;
    QVERIFY(QFile::copy(Sandbox::setupEngine(), program));
    // Reading a program is not using it.
    QFile reader(program);
    QVERIFY(reader.open(QIODevice::ReadOnly));
    QVERIFY(!hasProgramsInUse(folder, {}));
    reader.close();

    Sandbox engine;
    engine.setScenario("pause = start");
    QProcess process;
    process.start(program, { "/DIR="_L1 + engine.path(u"installed"_s) });
    QVERIFY(process.waitForStarted());
    QVERIFY(hasProgramsInUse(folder, {}));
    QVERIFY(isProgramInUse(program));
    QVERIFY(!hasProgramsInUse(folder, { program.toLower() }));
    QVERIFY(!isProgramInUse(folder + "/other.exe"_L1));
    process.kill();
    QVERIFY(process.waitForFinished());
    QTRY_VERIFY(!hasProgramsInUse(folder, {}));
}

QTEST_GUILESS_MAIN(TestGuardedFile)
#include "tst_guardedfile.moc"
