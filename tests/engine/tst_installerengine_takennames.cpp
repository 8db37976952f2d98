#include "engine/enginescene.h"
#include "support/stricttest.h"

#include <QFileInfo>
#include <QTest>
#include <QUuid>

using namespace Qt::Literals::StringLiterals;

// The program gets this one instead of the library's: the next random number is known here.
QUuid QUuid::createUuid()
{
    return QUuid(u"{0b5c1d7e-2f3a-4b69-8c7d-9e0f1a2b3c4d}"_s);
}

// Files that have the names of a run before it starts: they would be taken for its reports.
class TestInstallerEngineTakenNames : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void filesGo();
};

void TestInstallerEngineTakenNames::filesGo()
{
    const QString setup = u"varnel_setup_0b5c1d7e2f3a4b698c7d9e0f1a2b3c4d.ini"_s;
    const QString uninstall = u"varnel_uninst_0b5c1d7e2f3a4b698c7d9e0f1a2b3c4d.ini"_s;
    EngineScene scene("stall = forever\nstage = start\nlog-none = yes");
    for (const QString &name : QStringList { setup, setup + u".log"_s, uninstall })
        scene.sandbox.write(u"temp/"_s + name, "progress=99\n");
    scene.start();
    QCOMPARE(QFileInfo(scene.engine.statusFilePath()).fileName(), setup);
    QCOMPARE(scene.sandbox.tempFiles(), QStringList { uninstall });
    scene.startRemoval();
    QCOMPARE(QFileInfo(scene.engine.statusFilePath()).fileName(), uninstall);
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestInstallerEngineTakenNames)
#include "tst_installerengine_takennames.moc"
