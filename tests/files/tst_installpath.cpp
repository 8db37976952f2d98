#include "files/installpath.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestInstallPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void driveRoot_data();
    void driveRoot();
    void folder_data();
    void folder();
};

void TestInstallPath::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallPath::driveRoot_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isRoot");
    QTest::newRow("drive alone") << u"C:"_s << true;
    QTest::newRow("drive with slash") << u"C:/"_s << true;
    QTest::newRow("drive with back-slash") << uR"(C:\)"_s << true;
    QTest::newRow("lower case") << u"c:/"_s << true;
    QTest::newRow("first letter") << u"A:"_s << true;
    QTest::newRow("last letter") << u"Z:"_s << true;
    QTest::newRow("first letter, lower case") << u"a:"_s << true;
    QTest::newRow("last letter, lower case") << u"z:"_s << true;
    QTest::newRow("root of the file system") << u"/"_s << true;

    QTest::newRow("empty") << u""_s << false;
    QTest::newRow("letter alone") << u"C"_s << false;
    QTest::newRow("colon alone") << u":"_s << false;
    QTest::newRow("colon and slash") << u":/"_s << false;
    QTest::newRow("back-slash alone") << uR"(\)"_s << false;
    QTest::newRow("two slashes") << u"//"_s << false;
    QTest::newRow("slash and letter") << u"/C"_s << false;
    QTest::newRow("slash and drive") << u"/C:"_s << false;
    QTest::newRow("two letters") << u"CC:"_s << false;
    QTest::newRow("no colon") << u"C//"_s << false;
    QTest::newRow("two back-slashes") << uR"(C:\\)"_s << false;
    QTest::newRow("file on a drive") << u"C:a"_s << false;
    QTest::newRow("folder on a drive") << u"C:/a"_s << false;
    QTest::newRow("blank behind") << u"C: "_s << false;
    QTest::newRow("blank in front") << u" C:"_s << false;
    QTest::newRow("digit") << u"1:/"_s << false;
    QTest::newRow("before A") << u"@:/"_s << false;
    QTest::newRow("after Z") << u"[:/"_s << false;
    QTest::newRow("before a") << u"`:/"_s << false;
    QTest::newRow("after z") << u"{:/"_s << false;
    QTest::newRow("umlaut") << u"\u00c4:/"_s << false;
    QTest::newRow("wide letter") << u"\uff23:/"_s << false;
    QTest::newRow("dotless i, whose capital is I") << u"\u0131:/"_s << false;
    QTest::newRow("long s, whose capital is S") << u"\u017f:/"_s << false;
}

void TestInstallPath::driveRoot()
{
    QFETCH(const QString, path);
    QTEST(isDriveRoot(path), "isRoot");
}

void TestInstallPath::folder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::newRow("drive alone") << u"C:"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive with slash") << u"C:/"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive with back-slash") << uR"(C:\)"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive with slashes") << u"C:///"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive and dot") << u"C:/."_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("back to the drive") << u"C:/a/b/../.."_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("other drive, lower case") << u"d:/"_s << u"d:/Varnel Schematics"_s;
    QTest::newRow("root of the file system") << u"/"_s << u"/Varnel Schematics"_s;
    QTest::newRow("root and dot") << u"/./"_s << u"/Varnel Schematics"_s;
    QTest::newRow("above the root") << u"/.."_s << u"/Varnel Schematics"_s;
    QTest::newRow("far above the root") << u"/a/../../.."_s << u"/Varnel Schematics"_s;
    QTest::newRow("above the drive") << uR"(C:\..)"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("far above the drive") << u"C:/../../"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("where the drive stands") << u"C:."_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive and blank") << uR"(C:\ )"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive and dots") << u"C:/..."_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("hidden folder on the drive") << u"C:/.a"_s << u"C:/.a"_s;
    QTest::newRow("folder beside the drive") << uR"(C:\..\a)"_s << u"C:/a"_s;
    QTest::newRow("folder beside the root") << u"/../..a"_s << u"/..a"_s;
    QTest::newRow("back to the root") << u"/a/.."_s << u"/Varnel Schematics"_s;

    QTest::newRow("back to the drive, back-slashes")
        << uR"(C:\a\b\..\..)"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("drive with back-slashes") << uR"(d:\\)"_s << u"d:/Varnel Schematics"_s;
    QTest::newRow("drive and dot, back-slash") << uR"(C:\.)"_s << u"C:/Varnel Schematics"_s;

    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("one character") << u"a"_s << u"a"_s;
    QTest::newRow("folder, back-slashes")
        << uR"(C:\Program Files\.\Varnel\)"_s << u"C:/Program Files/Varnel"_s;
    if (QDir::separator() == u'/') {
        // Where a back-slash is only a character, a name may have it.
        QTest::newRow("back-slash in a name") << uR"(/opt/a\b)"_s << uR"(/opt/a\b)"_s;
    }
    QTest::newRow("folder") << u"C:/Program Files/Varnel"_s << u"C:/Program Files/Varnel"_s;
    QTest::newRow("folder, slash at the end") << u"C:/Varnel/"_s << u"C:/Varnel"_s;
    QTest::newRow("folder of one letter") << u"C:/a"_s << u"C:/a"_s;
    QTest::newRow("redundant parts") << u"C:/a//b/./c/../d/"_s << u"C:/a/b/d"_s;
    QTest::newRow("folder with the product's name")
        << u"C:/Varnel Schematics"_s << u"C:/Varnel Schematics"_s;
    QTest::newRow("folder below the root") << u"/opt/varnel"_s << u"/opt/varnel"_s;
    QTest::newRow("relative") << u"varnel"_s << u"varnel"_s;
    QTest::newRow("place markers") << u"C:/a %1 b %2"_s << u"C:/a %1 b %2"_s;
}

void TestInstallPath::folder()
{
    QFETCH(const QString, path);
    QTEST(installFolder(path), "folder");
}

QTEST_APPLESS_MAIN(TestInstallPath)
#include "tst_installpath.moc"
