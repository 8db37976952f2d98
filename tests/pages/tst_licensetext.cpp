#include "pages/licensetext.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kBuiltIn =
    u"Varnel Schematics — License Agreement\n\n"
    "© 2026 Varnel Solutions Team. All rights reserved.\n\n"
    "This software is proprietary and confidential. Unauthorized copying, distribution, or use "
    "is strictly prohibited."_s;

const QByteArray kNoFile;

} // namespace

class TestLicenseText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void places_data();
    void places();
    void decoding_data();
    void decoding();
    void notAFile_data();
    void notAFile();
    void linkToAFile();
    void unreadableFileCountsAsMissing();
    void otherNamesDoNotCount();
    void hugeFileIsShownWhole();
    void folderNameIsLiteral();

private:
    Sandbox m_sandbox;
};

void TestLicenseText::places_data()
{
    QTest::addColumn<QByteArray>("beside");
    QTest::addColumn<QByteArray>("above");
    QTest::addColumn<QString>("shown");
    QTest::newRow("beside the program") << QByteArray("Beside") << kNoFile << u"Beside"_s;
    QTest::newRow("in the parent folder") << kNoFile << QByteArray("Above") << u"Above"_s;
    QTest::newRow("the one beside goes first")
        << QByteArray("Beside") << QByteArray("Above") << u"Beside"_s;
    QTest::newRow("an empty one is skipped") << QByteArray("") << QByteArray("Above") << u"Above"_s;
    QTest::newRow("a blank one is skipped")
        << QByteArray(" \t\r\n \n") << QByteArray("Above") << u"Above"_s;
    QTest::newRow("only a byte-order mark is blank")
        << QByteArray("\xEF\xBB\xBF\n") << QByteArray("Above") << u"Above"_s;
    QTest::newRow("both blank") << QByteArray("\n") << QByteArray(" ") << kBuiltIn;
    QTest::newRow("none") << kNoFile << kNoFile << kBuiltIn;
}

void TestLicenseText::places()
{
    QFETCH(QByteArray, beside);
    QFETCH(QByteArray, above);
    const QString root = QString::fromLatin1(QTest::currentDataTag());
    QDir().mkpath(m_sandbox.path(root + u"/bin"_s));
    if (!beside.isNull())
        m_sandbox.write(root + u"/bin/LICENSE.txt"_s, beside);
    if (!above.isNull())
        m_sandbox.write(root + u"/LICENSE.txt"_s, above);
    QTEST(licenseText(m_sandbox.path(root + u"/bin"_s)), "shown");
}

void TestLicenseText::decoding_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("shown");
    QTest::newRow("white space around it goes")
        << QByteArray(" \n\tFirst\n\n  Second \n\n") << u"First\n\n  Second"_s;
    QTest::newRow("CRLF") << QByteArray("First\r\nSecond\r\n") << u"First\nSecond"_s;
    QTest::newRow("UTF-8") << QByteArray("\xC2\xA9 \xE2\x80\x94 \xE6\xBC\xA2") << u"© — 漢"_s;
    QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "Text")
                                     << u"Text"_s;
    QTest::newRow("markup and markers stay")
        << QByteArray("a&b <i>%2 %1</i>") << u"a&b <i>%2 %1</i>"_s;
    QTest::newRow("invalid UTF-8 is not fatal") << QByteArray("a\xFF\xFE"
                                                              "b")
                                                << u"a\uFFFD\uFFFDb"_s;
}

void TestLicenseText::decoding()
{
    QFETCH(QByteArray, content);
    m_sandbox.write(u"decoding/LICENSE.txt"_s, content);
    QTEST(licenseText(m_sandbox.path(u"decoding"_s)), "shown");
}

void TestLicenseText::notAFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("folder") << u"folder"_s;
#ifdef Q_OS_UNIX
    QTest::newRow("named pipe") << u"pipe"_s;
    QTest::newRow("link that leads nowhere") << u"link"_s;
    QTest::newRow("endless device") << u"device"_s;
#endif
}

// Neither error nor hang: what lies in the parent folder counts.
void TestLicenseText::notAFile()
{
    QFETCH(QString, kind);
    const QString folder = m_sandbox.path(kind + u"/bin"_s);
    QDir().mkpath(folder);
    m_sandbox.write(kind + u"/LICENSE.txt"_s, "Above");
    const QString place = folder + u"/LICENSE.txt"_s;
    if (kind == "folder"_L1)
        QVERIFY(QDir().mkpath(place));
#ifdef Q_OS_UNIX
    if (kind == "pipe"_L1)
        QCOMPARE(mkfifo(qPrintable(place), 0600), 0);
    if (kind == "link"_L1)
        QVERIFY(QFile::link(folder + u"/missing"_s, place));
    if (kind == "device"_L1)
        QVERIFY(QFile::link(u"/dev/zero"_s, place));
#endif
    QCOMPARE(licenseText(folder), u"Above"_s);
}

void TestLicenseText::linkToAFile()
{
#ifndef Q_OS_UNIX
    QSKIP("Links are shortcuts here");
#endif
    m_sandbox.write(u"linked/elsewhere.txt"_s, "Linked");
    QVERIFY(QFile::link(m_sandbox.path(u"linked/elsewhere.txt"_s),
                        m_sandbox.path(u"linked/LICENSE.txt"_s)));
    QCOMPARE(licenseText(m_sandbox.path(u"linked"_s)), u"Linked"_s);
}

void TestLicenseText::unreadableFileCountsAsMissing()
{
    const QString file = m_sandbox.write(u"closed/bin/LICENSE.txt"_s, "Beside");
    m_sandbox.write(u"closed/LICENSE.txt"_s, "Above");
    if (!QFile::setPermissions(file, {}) || QFile(file).open(QIODevice::ReadOnly))
        QSKIP("This user may read everything");
    QCOMPARE(licenseText(m_sandbox.path(u"closed/bin"_s)), u"Above"_s);
}

void TestLicenseText::otherNamesDoNotCount()
{
    for (const QString &name : { u"LICENSE"_s, u"LICENSE.md"_s, u"LICENSE.txt.bak"_s })
        m_sandbox.write(u"names/"_s + name, "Other");
    QCOMPARE(licenseText(m_sandbox.path(u"names"_s)), kBuiltIn);
}

void TestLicenseText::hugeFileIsShownWhole()
{
    QByteArray content;
    while (content.size() < 5'000'000)
        content += "All of this is licensed to you. ";
    m_sandbox.write(u"huge/LICENSE.txt"_s, content);
    QVERIFY(licenseText(m_sandbox.path(u"huge"_s)) == QString::fromLatin1(content.trimmed()));
}

void TestLicenseText::folderNameIsLiteral()
{
    m_sandbox.write(Sandbox::oddName() + u"/LICENSE.txt", "Here");
    QCOMPARE(licenseText(m_sandbox.path(Sandbox::oddName())), u"Here"_s);
    QCOMPARE(licenseText(m_sandbox.path(u"no such folder"_s)), kBuiltIn);
}

QTEST_GUILESS_MAIN(TestLicenseText)
#include "tst_licensetext.moc"
