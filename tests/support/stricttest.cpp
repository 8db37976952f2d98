#include "support/stricttest.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

void StrictTest::init()
{
    QTest::failOnWarning(QRegularExpression(
        u"^(?!This plugin does not support (propagateSizeHints|raise)\\(\\))"_s));
}
