#include "support/sandbox.h"
#include "system/probes.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A volume beside that of the root, so that the answer tells which of the two was looked at.
QString otherVolume()
{
    for (const QString &volume : { u"/dev/shm"_s, u"/dev"_s, u"/proc"_s, u"/sys"_s }) {
        if (QStorageInfo(volume).rootPath() == volume)
            return volume;
    }
    return {};
}

/// What the row names as its volume.
QString volumeOf(const CheckResult &result)
{
    return result.value.section(u" free on "_s, 1);
}

} // namespace

class TestProbesDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void volume_data();
    void volume();
    void textOfTheRow();
    void runIncludesTheDestination();
    void nothingIsCreated();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestProbesDisk::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestProbesDisk::cleanup()
{
    m_sandbox.reset();
}

void TestProbesDisk::volume_data()
{
    QTest::addColumn<QString>("path"); // {other}: another volume, {own}: the sandbox
    QTest::addColumn<QString>("nearest"); // the existing folder whose volume counts
    QTest::newRow("root") << u"{root}"_s << u"{root}"_s;
    QTest::newRow("missing in the root") << u"{root}no such folder"_s << u"{root}"_s;
    QTest::newRow("two missing in the root") << u"{root}no such folder/nor this"_s << u"{root}"_s;
    QTest::newRow("no path") << QString() << u"{root}"_s;
    QTest::newRow("relative, missing") << u"no such folder/nor this"_s << u"{root}"_s;
    QTest::newRow("drive of another system") << uR"(Q:\no such folder\nor this)"_s << u"{root}"_s;
    QTest::newRow("own folder") << u"{own}/home"_s << u"{own}"_s;
    QTest::newRow("missing in the own folder") << u"{own}/home/a"_s << u"{own}"_s;
    QTest::newRow("two missing in the own folder") << u"{own}/home/a/b"_s << u"{own}"_s;
    QTest::newRow("file for a folder") << u"{own}/file/a"_s << u"{own}"_s;
#ifndef Q_OS_WIN
    QTest::newRow("file for a folder, other volume") << u"/dev/null/a/b"_s << u"/dev"_s;
#endif
    QTest::newRow("blanks, signs, other scripts") << u"{own}/a %1 & 'б' /c"_s << u"{own}"_s;
    QTest::newRow("200 characters")
        << QString(u"{own}/" + QString(200, u'x') + u"/y") << u"{own}"_s;
    QTest::newRow("other volume") << u"{other}"_s << u"{other}"_s;
    QTest::newRow("missing on the other volume") << u"{other}/a"_s << u"{other}"_s;
    QTest::newRow("two missing on the other volume") << u"{other}/a/b"_s << u"{other}"_s;
    QTest::newRow("ten missing on the other volume")
        << u"{other}/a/b/c/d/e/f/g/h/i/j"_s << u"{other}"_s;
    QTest::newRow("separator at the end") << u"{other}/a/b/"_s << u"{other}"_s;
    QTest::newRow("doubled separators") << u"{other}//a//b//"_s << u"{other}"_s;
}

void TestProbesDisk::volume()
{
    QFETCH(QString, path);
    QFETCH(QString, nearest);
    const QString other = otherVolume();
    if (other.isEmpty() && nearest == u"{other}"_s)
        QSKIP("This system has no volume besides that of its root.");
    m_sandbox->write(u"file"_s, {});
    for (QString *text : { &path, &nearest })
        text->replace(u"{root}"_s, QDir::rootPath())
            .replace(u"{other}"_s, other)
            .replace(u"{own}"_s, m_sandbox->path(u"."_s).chopped(2));
    QVERIFY(QFileInfo(nearest).isDir());
    QCOMPARE(volumeOf(checkDiskSpace(path)),
             QDir::toNativeSeparators(QStorageInfo(nearest).rootPath()));
}

void TestProbesDisk::textOfTheRow()
{
    const CheckResult result = checkDiskSpace(m_sandbox->tempFolder());
    QCOMPARE(result.label, u"Disk space"_s);
    const QString volume = QRegularExpression::escape(
        QDir::toNativeSeparators(QStorageInfo(m_sandbox->tempFolder()).rootPath()));
    const QRegularExpression form(
        u"^220 MB required · (only )?(\\d+([.,]\\d)? \\w+) free on %1$"_s.arg(volume));
    const QRegularExpressionMatch match = form.match(result.value);
    QVERIFY2(match.hasMatch(), qPrintable(result.value));
    QCOMPARE(match.captured(1).isEmpty(), result.ok);
}

void TestProbesDisk::runIncludesTheDestination()
{
    const QString other = otherVolume();
    if (other.isEmpty())
        QSKIP("This system has no volume besides that of its root.");
    QCOMPARE(volumeOf(runSystemChecks(other + "/a/b"_L1).value(3)), other);
    QCOMPARE(volumeOf(runSystemChecks(u"/"_s).value(3)), u"/"_s);
}

void TestProbesDisk::nothingIsCreated()
{
    const QString folder = m_sandbox->path(u"a/b"_s);
    QVERIFY(!checkDiskSpace(folder).value.isEmpty());
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"a"_s)));
}

QTEST_GUILESS_MAIN(TestProbesDisk)
#include "tst_probes_disk.moc"
