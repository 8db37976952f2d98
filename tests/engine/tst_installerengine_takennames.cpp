#include "engine/enginescene.h"

#include <QRegularExpression>
#include <QTest>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

// The program gets this one instead of the library's: the next random number is known here.
QUuid QUuid::createUuid()
{
    return QUuid(u"{0b5c1d7e-2f3a-4b69-8c7d-9e0f1a2b3c4d}"_s);
}

// Files that have the names of a run already, before it begins.
class TestInstallerEngineTakenNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void installation();
    void removal();
};

namespace {

const QString kSetup = u"varnel_setup_0b5c1d7e2f3a4b698c7d9e0f1a2b3c4d.ini"_s;
const QString kUninstall = u"varnel_uninst_0b5c1d7e2f3a4b698c7d9e0f1a2b3c4d.ini"_s;
const QByteArray kWriteNothing = "stall = forever\nstage = start\nlog-none = yes";

} // namespace

// They would be taken for what the engine says.
void TestInstallerEngineTakenNames::installation()
{
    EngineScene run(kWriteNothing);
    run.sandbox.write(u"temp/"_s + kSetup, "progress=99\n");
    run.sandbox.write(u"temp/"_s + kSetup + u".log"_s, "Dest filename: a\r\n");
    run.start();
    QCOMPARE(run.engine.statusFilePath(), run.sandbox.path(u"temp/"_s + kSetup));
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineTakenNames::removal()
{
    EngineScene run(kWriteNothing);
    const QString uninstaller = run.sandbox.path(u"unins000.exe"_s);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    run.sandbox.write(u"temp/"_s + kUninstall, "progress=99\n");
    run.engine.startUninstall(uninstaller);
    QCOMPARE(run.engine.statusFilePath(), run.sandbox.path(u"temp/"_s + kUninstall));
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestInstallerEngineTakenNames)
#include "tst_installerengine_takennames.moc"
