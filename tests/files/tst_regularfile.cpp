#include "engine/process.h"
#include "files/regularfile.h"
#include "support/sandbox.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

class TestRegularFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void regular();
    void empty();
    void missing();
    void folder();
    void fifo();
    void device();
    void links();
    void unreadable();
};

void TestRegularFile::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestRegularFile::regular()
{
    const Sandbox sandbox;
    QFile file(sandbox.write(u"a b.ini"_s, "one\r\ntwo\n"));
    QVERIFY(openRegularFile(file));
    QVERIFY(file.isReadable());
    QVERIFY(!file.isWritable());
    QCOMPARE(file.pos(), 0);
    QCOMPARE(file.readAll(), "one\r\ntwo\n");
}

void TestRegularFile::empty()
{
    const Sandbox sandbox;
    QFile file(sandbox.write(u"empty.ini"_s, {}));
    QVERIFY(openRegularFile(file));
    QVERIFY(file.atEnd());
}

void TestRegularFile::missing()
{
    const Sandbox sandbox;
    QFile file(sandbox.path(u"missing.ini"_s));
    QVERIFY(!openRegularFile(file));
    QVERIFY(!file.isOpen());
    QVERIFY(!file.exists());
    QFile nameless;
    QVERIFY(!openRegularFile(nameless));
}

void TestRegularFile::folder()
{
    const Sandbox sandbox;
    QFile file(sandbox.tempFolder());
    QVERIFY(!openRegularFile(file));
    QVERIFY(!file.isOpen());
}

void TestRegularFile::fifo()
{
    const Sandbox sandbox;
    QFile file(sandbox.path(u"fifo"_s));
    if (!makeFifo(file.fileName()))
        QSKIP("no FIFOs here");
    QVERIFY(!openRegularFile(file));
    QVERIFY(!file.isOpen());
}

void TestRegularFile::device()
{
    QFile file(QProcess::nullDevice());
    QVERIFY(!openRegularFile(file));
    QVERIFY(!file.isOpen());
}

void TestRegularFile::links()
{
    const Sandbox sandbox;
    const QString target = sandbox.write(u"target"_s, "text");
    std::error_code error;
    std::filesystem::create_symlink(target.toStdU16String(),
                                    sandbox.path(u"to-file"_s).toStdU16String(), error);
    if (error)
        QSKIP("no links here");
    std::filesystem::create_symlink(sandbox.tempFolder().toStdU16String(),
                                    sandbox.path(u"to-folder"_s).toStdU16String());
    sandbox.write(u"temp/beside"_s, "text");
    for (const QString &name : { u"to-nothing"_s, u"to-itself"_s }) {
        std::filesystem::create_symlink(
            sandbox.path(name == u"to-itself" ? name : u"missing"_s).toStdU16String(),
            sandbox.path(name).toStdU16String());
    }

    for (const QString &name : { u"to-file"_s, u"to-folder"_s, u"to-nothing"_s, u"to-itself"_s }) {
        QFile link(sandbox.path(name));
        QVERIFY2(!isRegularFile(link.fileName()), qPrintable(name));
        QVERIFY2(!openRegularFile(link), qPrintable(name));
    }
    // A link on the way to it does not matter.
    QVERIFY(isRegularFile(sandbox.path(u"to-folder/beside"_s)));
}

void TestRegularFile::unreadable()
{
    const Sandbox sandbox;
    QFile file(sandbox.write(u"secret"_s, "text"));
    if (!file.setPermissions({}) || QFileInfo(file).isReadable())
        QSKIP("nothing can be hidden from this user");
    QVERIFY(!openRegularFile(file));
    QVERIFY(!file.isOpen());
}

QTEST_APPLESS_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
