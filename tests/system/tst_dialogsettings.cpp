#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/dialogsettings.h"

#include <QDir>
#include <QDirIterator>
#include <QSettings>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What a file dialog does when it goes.
void writeAsADialog(const QString &lastVisited)
{
    QSettings settings(QSettings::UserScope, u"QtProject"_s);
    settings.beginGroup(u"FileDialog"_s);
    settings.setValue(u"lastVisited"_s, lastVisited);
    settings.setValue(u"sidebarWidth"_s, 80);
    settings.setValue(u"shortcuts"_s, QStringList { u"file:"_s, u"file:///"_s });
}

} // namespace

class TestDialogSettings : public StrictTest
{
    Q_OBJECT

public:
    static void initMain() { qunsetenv("XDG_CONFIG_HOME"); }

private Q_SLOTS:
    void nothingIsLeft();
    void othersSettingsStay();

private:
    Sandbox m_sandbox;
};

void TestDialogSettings::nothingIsLeft()
{
    const QStringList before = m_sandbox.storedRegistry();
    bool wasShown = false;
    withoutDialogSettings([&] {
        wasShown = true;
        writeAsADialog(u"/opt"_s);
    });
    QVERIFY(wasShown);
    QCOMPARE(m_sandbox.storedRegistry(), before);
    QDirIterator files(m_sandbox.path(u"home"_s),
                       QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QVERIFY2(!files.hasNext(), qPrintable(files.next()));
}

void TestDialogSettings::othersSettingsStay()
{
#ifndef Q_OS_WIN
    QSKIP("Here the dialog's settings are never those of the user.");
#endif
    for (const QString &key : { u"FileDialog/lastVisited"_s, u"Other/value"_s }) {
        m_sandbox.setRegistry({});
        QSettings others(QSettings::UserScope, u"QtProject"_s);
        others.setValue(key, u"/home"_s);
        others.sync();
        const QStringList before = m_sandbox.storedRegistry();
        QVERIFY(!before.filter(u"QtProject"_s).isEmpty());
        withoutDialogSettings([] { writeAsADialog(u"/opt"_s); });
        QCOMPARE(m_sandbox.storedRegistry(), before);
        QCOMPARE(others.value(key), u"/home"_s);
    }
}

QTEST_GUILESS_MAIN(TestDialogSettings)
#include "tst_dialogsettings.moc"
