#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

/// Clicks `change` and calls `use` with the folder chooser that opens.
template <typename Use>
void useFolderChooser(QPushButton *change, Use use)
{
    // If something goes wrong, the dialog must not wait for a user for ever.
    QTimer guard;
    guard.callOnTimeout([] { QApplication::activeModalWidget()->close(); });
    guard.start(10'000);
    bool wasShown = false;
    QTimer::singleShot(0, change, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        wasShown = true;
        use(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
    QTest::mouseClick(change, Qt::LeftButton);
    QVERIFY(wasShown);
}

/// Types `folder` into the chooser and confirms it.
inline void chooseFolder(QPushButton *change, const QString &folder)
{
    useFolderChooser(change, [&](QDialog *dialog) {
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(folder);
        dialog->accept();
    });
}
