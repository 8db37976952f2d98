#include "engine/process.h"
#include "files/guardedfile.h"
#include "files/programsinuse.h"
#include "files/regularfile.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

/// Which files are opened, that nobody exchanges one that is held, and whether programs are in use;
/// the latter two Windows alone can prevent and tell.
class TestFiles : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void regularFile();
    void noRegularFile();
    void linksAreNotFollowed();
    void nobodyCanExchangeAHeldFile();
    void programsInUse();
};

void TestFiles::regularFile()
{
    const Sandbox sandbox;
    for (const QByteArray &text : { QByteArray("one\r\ntwo\n"), QByteArray() }) {
        QFile file(sandbox.write(u"a b.ini"_s, text));
        QVERIFY(openRegularFile(file));
        QVERIFY(!file.isWritable());
        QCOMPARE(file.readAll(), text);
    }
}

void TestFiles::noRegularFile()
{
    const Sandbox sandbox;
    const QString missing = sandbox.path(u"missing.ini"_s);
    QStringList names { missing, QString(), sandbox.tempFolder(), QProcess::nullDevice() };
    if (const QString fifo = sandbox.path(u"fifo"_s); makeFifo(fifo))
        names << fifo;
    // Nothing can be hidden from some users.
    const QString secret = sandbox.write(u"secret"_s, "text");
    if (QFile::setPermissions(secret, {}) && !QFileInfo(secret).isReadable())
        names << secret;
    for (const QString &name : std::as_const(names)) {
        QFile file(name);
        QVERIFY2(!openRegularFile(file), qPrintable(name));
        QVERIFY2(!file.isOpen(), qPrintable(name));
    }
    QVERIFY(!QFile::exists(missing));
}

void TestFiles::linksAreNotFollowed()
{
    const Sandbox sandbox;
    sandbox.write(u"target"_s, "text");
    sandbox.write(u"temp/beside"_s, "text");
    for (const QString &target : { u"target"_s, u"temp"_s, u"missing"_s, u"to-itself"_s }) {
        const QString name = target.startsWith(u"to-") ? target : QString(u"to-" + target);
        std::error_code error;
        std::filesystem::create_symlink(sandbox.path(target).toStdU16String(),
                                        sandbox.path(name).toStdU16String(), error);
        if (error)
            QSKIP("no links here");
        QFile link(sandbox.path(name));
        QVERIFY2(!isRegularFile(link.fileName()), qPrintable(name));
        QVERIFY2(!openRegularFile(link), qPrintable(name));
    }
    // A link on the way to it does not matter.
    QVERIFY(isRegularFile(sandbox.path(u"to-temp/beside"_s)));
}

void TestFiles::nobodyCanExchangeAHeldFile()
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
    QVERIFY(!file.hold(sandbox.path(u"missing.exe"_s)));
    QVERIFY(!file.isHeld());
    QVERIFY(!file.errorString().isEmpty());

    QVERIFY(file.hold(path));
    file.release();
    QVERIFY(!file.isHeld());
#ifdef Q_OS_WIN // which alone knows who writes a file
    QFile written(path);
    QVERIFY(written.open(QIODevice::ReadWrite));
    QVERIFY(!file.hold(path));
    written.close();
#endif
    QVERIFY(QFile::remove(path));
}

void TestFiles::programsInUse()
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

QTEST_GUILESS_MAIN(TestFiles)
#include "tst_files.moc"
