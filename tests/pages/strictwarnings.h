#pragma once

#include <QRegularExpression>
#include <QTest>

/// Makes every warning a failure of the test, except those that the off-screen platform prints
/// whenever a window is shown or raised.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(
        QStringLiteral("^(?!This plugin does not support (propagateSizeHints|raise)\\(\\))")));
}
