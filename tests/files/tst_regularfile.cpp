#include "engine/process.h"
#include "files/regularfile.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

class TestRegularFile : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void regular();
    void others();
    void links();
};

void TestRegularFile::regular()
{
    const Sandbox sandbox;
    for (const QByteArray &text : { QByteArray("one\r\ntwo\n"), QByteArray() }) {
        QFile file(sandbox.write(u"a b.ini"_s, text));
        QVERIFY(openRegularFile(file));
        QVERIFY(file.isReadable());
        QVERIFY(!file.isWritable());
        QCOMPARE(file.pos(), 0);
        QCOMPARE(file.readAll(), text);
    }
}

void TestRegularFile::others()
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

QTEST_APPLESS_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
