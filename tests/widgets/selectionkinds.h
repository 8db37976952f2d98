#pragma once

#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"

#include <QTest>

#include <functional>

using SelectionMaker = std::function<SelectionControl *(const QString &text)>;

/// One row of test data for each kind of selection control: how to make one, its own progress
/// property and how long that takes, and what its preferred height has on top of the text's.
inline void addSelectionKinds()
{
    QTest::addColumn<SelectionMaker>("make");
    QTest::addColumn<QByteArray>("progress");
    QTest::addColumn<int>("duration");
    QTest::addColumn<int>("room");
    const SelectionMaker radioOption = [](const QString &text) { return new RadioOption(text); };
    const SelectionMaker checkBox = [](const QString &text) { return new ToggleCheckbox(text); };
    QTest::newRow("radio option") << radioOption << QByteArray("selectProgress") << 160 << 14;
    QTest::newRow("check box") << checkBox << QByteArray("checkProgress") << 180 << 16;
}
