#include "files/installpath.h"
#include "support/stricttest.h"

#include <QDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestInstallPath : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void driveRoot();
    void folder_data();
    void folder();
};

void TestInstallPath::driveRoot()
{
    for (const QString &root :
         { u"C:"_s, u"C:/"_s, uR"(C:\)"_s, u"c:/"_s, u"A:"_s, u"Z:"_s, u"a:"_s, u"z:"_s, u"/"_s })
        QVERIFY2(isDriveRoot(root), qPrintable(root));
    // The last two are letters whose capitals are I and S.
    for (const QString &other :
         { u""_s,     u"C"_s,   u":"_s,        u":/"_s,       uR"(\)"_s,     u"//"_s,
           u"/C"_s,   u"/C:"_s, u"CC:"_s,      u"C//"_s,      uR"(C:\\)"_s,  u"C:a"_s,
           u"C:/a"_s, u"C: "_s, u" C:"_s,      u"1:/"_s,      u"@:/"_s,      u"[:/"_s,
           u"`:/"_s,  u"{:/"_s, u"\u00c4:/"_s, u"\uff23:/"_s, u"\u0131:/"_s, u"\u017f:/"_s })
        QVERIFY2(!isDriveRoot(other), qPrintable(other));
}

void TestInstallPath::folder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    const auto row = [](const QString &path, const QString &folder) {
        QTest::newRow(qPrintable(path)) << path << folder;
    };
    for (const QString &root :
         { u"C:"_s, u"C:/"_s, uR"(C:\)"_s, u"C:///"_s, uR"(C:\\)"_s, u"C:/."_s, uR"(C:\.)"_s,
           u"C:/a/b/../.."_s, uR"(C:\a\b\..\..)"_s, uR"(C:\..)"_s, u"C:/../../"_s, u"C:."_s,
           uR"(C:\ )"_s, u"C:/..."_s })
        row(root, u"C:/Varnel Schematics"_s);
    for (const QString &root : { u"/"_s, u"/./"_s, u"/.."_s, u"/a/../../.."_s, u"/a/.."_s })
        row(root, u"/Varnel Schematics"_s);
    row(u"d:/"_s, u"d:/Varnel Schematics"_s);
    row(u"C:/.a"_s, u"C:/.a"_s);
    row(uR"(C:\..\a)"_s, u"C:/a"_s);
    row(u"/../..a"_s, u"/..a"_s);
    row(uR"(C:\Program Files\.\Varnel\)"_s, u"C:/Program Files/Varnel"_s);
    row(u"C:/a//b/./c/../d/"_s, u"C:/a/b/d"_s);
    for (const QString &folder : { u""_s, u"a"_s, u"varnel"_s, u"C:/a"_s, u"C:/Varnel Schematics"_s,
                                   u"/opt/varnel"_s, u"C:/a %1 b %2"_s })
        row(folder, folder);
    if (QDir::separator() == u'/')
        row(uR"(/opt/a\b)"_s, uR"(/opt/a\b)"_s); // where a back-slash is only a character
}

void TestInstallPath::folder()
{
    QFETCH(const QString, path);
    QTEST(installFolder(path), "folder");
}

QTEST_APPLESS_MAIN(TestInstallPath)
#include "tst_installpath.moc"
