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
    void otherNamesDoNotCount();
    void hugeFileIsShownWhole();

private:
    Sandbox m_sandbox;
};

void TestLicenseText::places_data()
{
    QTest::addColumn<QByteArray>("beside");
    QTest::addColumn<QByteArray>("above");
    QTest::addColumn<QString>("shown");
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
    const QString root = Sandbox::oddName() + QString::fromLatin1(QTest::currentDataTag());
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
    QTest::newRow("UTF-8") << QByteArray("\xEF\xBB\xBF\xC2\xA9 \xE2\x80\x94 \xE6\xBC\xA2")
                           << u"© — 漢"_s;
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
    QTest::addColumn<QString>("shown");
    QTest::newRow("folder") << u"Above"_s;
    QTest::newRow("file that cannot be read") << u"Above"_s;
#ifdef Q_OS_UNIX
    QTest::newRow("named pipe") << u"Above"_s;
    QTest::newRow("link that leads nowhere") << u"Above"_s;
    QTest::newRow("endless device") << u"Above"_s;
    QTest::newRow("link to a file") << u"Linked"_s;
#endif
}

// Neither error nor hang: the text in the parent folder is shown.
void TestLicenseText::notAFile()
{
    const QLatin1StringView kind(QTest::currentDataTag());
    const QString root = kind;
    const QString place = m_sandbox.path(root + u"/bin/LICENSE.txt"_s);
    QDir().mkpath(m_sandbox.path(root + u"/bin"_s));
    m_sandbox.write(root + u"/LICENSE.txt"_s, "Above");
    if (kind == "folder"_L1)
        QVERIFY(QDir().mkpath(place));
    if (kind == "file that cannot be read"_L1) {
        m_sandbox.write(root + u"/bin/LICENSE.txt"_s, "Beside");
        if (!QFile::setPermissions(place, {}) || QFile(place).open(QIODevice::ReadOnly))
            QSKIP("This user may read everything");
    }
#ifdef Q_OS_UNIX
    if (kind == "named pipe"_L1)
        QCOMPARE(mkfifo(qPrintable(place), 0600), 0);
    if (kind == "link that leads nowhere"_L1)
        QVERIFY(QFile::link(m_sandbox.path(u"missing"_s), place));
    if (kind == "endless device"_L1)
        QVERIFY(QFile::link(u"/dev/zero"_s, place));
    if (kind == "link to a file"_L1)
        QVERIFY(QFile::link(m_sandbox.write(u"elsewhere.txt"_s, "Linked"), place));
#endif
    QTEST(licenseText(m_sandbox.path(root + u"/bin"_s)), "shown");
}

void TestLicenseText::otherNamesDoNotCount()
{
    for (const QString &name : { u"LICENSE"_s, u"LICENSE.md"_s, u"LICENSE.txt.bak"_s })
        m_sandbox.write(u"names/"_s + name, "Other");
    QCOMPARE(licenseText(m_sandbox.path(u"names"_s)), kBuiltIn);
}

void TestLicenseText::hugeFileIsShownWhole()
{
    const QByteArray content = QByteArray("All of this is licensed to you. ").repeated(160'000);
    m_sandbox.write(u"huge/LICENSE.txt"_s, content);
    QVERIFY(licenseText(m_sandbox.path(u"huge"_s)) == QString::fromLatin1(content.trimmed()));
}

QTEST_GUILESS_MAIN(TestLicenseText)
#include "tst_licensetext.moc"
