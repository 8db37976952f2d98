#pragma once

#include <QtTest>

/// A test that fails with each warning, except those that the off-screen platform prints whenever a
/// window is shown or raised.
class StrictTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
};
