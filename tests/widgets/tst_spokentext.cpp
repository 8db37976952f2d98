#include "widgets/spokentext.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSpokenText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sentences_data();
    void sentences();
};

void TestSpokenText::sentences_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("spoken");
    QTest::newRow("nothing") << QStringList() << QString();
    QTest::newRow("title and body")
        << QStringList { u"Ready"_s, u"It will begin."_s } << u"Ready. It will begin."_s;
    QTest::newRow("lines") << QStringList { u"One\nTwo\n\nThree"_s } << u"One. Two. Three."_s;
    QTest::newRow("other ends") << QStringList { u"Do you?"_s, u"Begins…"_s, u"Stop!"_s }
                                << u"Do you? Begins… Stop!"_s;
    QTest::newRow("heading") << QStringList { u"Folder:\nC:\\Tools"_s } << u"Folder: C:\\Tools."_s;
    QTest::newRow("nothing said") << QStringList { u"Old"_s, u"→"_s, u" "_s, QString(), u"New"_s }
                                  << u"Old. New."_s;
    QTest::newRow("a figure") << QStringList { u"7"_s } << u"7."_s;
    QTest::newRow("literally") << QStringList { u"/a  b/<i>&amp; %1</i>"_s }
                               << u"/a  b/<i>&amp; %1</i>."_s;
}

void TestSpokenText::sentences()
{
    QFETCH(const QStringList, texts);
    QFETCH(const QString, spoken);
    QCOMPARE(spokenText(texts), spoken);
}

QTEST_APPLESS_MAIN(TestSpokenText)
#include "tst_spokentext.moc"
