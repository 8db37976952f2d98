#pragma once

#include <QRegularExpression>
#include <QTest>

/// Makes every warning a failure of the test, but for what the off-screen platform says whenever a
/// window is shown on it or brought to the front.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(
        QStringLiteral("^(?!This plugin does not support (propagateSizeHints|raise)\\(\\))")));
}
