#include "pages/licensetext.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kBuiltIn = u"Varnel Schematics — License Agreement"_s; ///< its first line
const QByteArray kNoFile;

} // namespace

class TestLicenseText : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void places_data();
    void places();
    void decoding_data();
    void decoding();
    void notAFile();

private:
    Sandbox m_sandbox;
};

void TestLicenseText::places_data()
{
    QTest::addColumn<QByteArray>("beside");
    QTest::addColumn<QByteArray>("above");
    QTest::addColumn<QString>("firstLine");
    QTest::newRow("in the parent folder") << kNoFile << QByteArray("Above") << u"Above"_s;
    QTest::newRow("the one beside goes first")
        << QByteArray("Beside") << QByteArray("Above") << u"Beside"_s;
    QTest::newRow("a blank one is skipped")
        << QByteArray("\xEF\xBB\xBF \t\r\n \n") << QByteArray("Above") << u"Above"_s;
    QTest::newRow("both blank") << QByteArray("\n") << QByteArray("") << kBuiltIn;
    QTest::newRow("none") << kNoFile << kNoFile << kBuiltIn;
}

void TestLicenseText::places()
{
    QFETCH(QByteArray, beside);
    QFETCH(QByteArray, above);
    const QString root = Sandbox::oddName() + QString::fromLatin1(QTest::currentDataTag());
    m_sandbox.write(root + u"/bin/LICENSE.md"_s, "Another name");
    if (!beside.isNull())
        m_sandbox.write(root + u"/bin/LICENSE.txt"_s, beside);
    if (!above.isNull())
        m_sandbox.write(root + u"/LICENSE.txt"_s, above);
    QTEST(licenseText(m_sandbox.path(root + u"/bin"_s)).section(u'\n', 0, 0), "firstLine");
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
}

void TestLicenseText::decoding()
{
    QFETCH(QByteArray, content);
    m_sandbox.write(u"decoding/LICENSE.txt"_s, content);
    QTEST(licenseText(m_sandbox.path(u"decoding"_s)), "shown");
}

// Neither error nor hang: the text in the parent folder is shown.
void TestLicenseText::notAFile()
{
    m_sandbox.write(u"LICENSE.txt"_s, "Above");
    QVERIFY(QDir().mkpath(m_sandbox.path(u"folder/LICENSE.txt"_s)));
    QCOMPARE(licenseText(m_sandbox.path(u"folder"_s)), u"Above"_s);
#ifdef Q_OS_UNIX
    QVERIFY(QDir().mkpath(m_sandbox.path(u"pipe"_s)));
    QCOMPARE(mkfifo(qPrintable(m_sandbox.path(u"pipe/LICENSE.txt"_s)), 0600), 0);
    QCOMPARE(licenseText(m_sandbox.path(u"pipe"_s)), u"Above"_s);
#endif
}

QTEST_GUILESS_MAIN(TestLicenseText)
#include "tst_licensetext.moc"
