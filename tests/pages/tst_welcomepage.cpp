#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/welcomepage.h"
#include "theme/thememanager.h"

#include <QLabel>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestWelcomePage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void labels();
    void fits();
};

void TestWelcomePage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestWelcomePage::layout()
{
    WelcomePage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Welcome to the Varnel Schematics Setup Wizard"_s,
                 u"gap 5"_s,
                 u"label: Setup will install Varnel Schematics version 1.6.9 on this computer.\n"
                 "We recommend closing any other applications before you continue."_s,
                 u"gap 12"_s,
                 u"label: Publisher: Varnel Solutions Team · varnel.example"_s,
                 u"stretch"_s,
             }));
}

void TestWelcomePage::labels()
{
    WelcomePage page;
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    QCOMPARE(labels.size(), 3);
    const QList<int> sizes { 18, 12, 10 };
    const QStringList tokens { u"@INS_TX"_s, u"@INS_TX2"_s, u"@INS_TX3"_s };
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(labels[i]->font().pixelSize(), sizes[i]);
            QCOMPARE(labels[i]->styleSheet(), coloured(u"color:%1;"_s, { tokens[i] }));
        }
    }
}

void TestWelcomePage::fits()
{
    WelcomePage page;
    QVERIFY(fitsWindow(&page));
}

QTEST_MAIN(TestWelcomePage)
#include "tst_welcomepage.moc"
