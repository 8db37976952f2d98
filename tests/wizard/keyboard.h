#pragma once

#include "wizard/installertitlebar.h"
#include "wizard/olddriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGraphicsEffect>

/// A driver whose keys go where the focus is, as those of a keyboard do.
struct Keyboard : WizardDriver
{
    using WizardDriver::WizardDriver;

    [[nodiscard]] bool open(RunMode mode)
    {
        show(mode);
        return QTest::qWaitForWindowActive(&wizard);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        settle();
        QTest::keyClick(wizard.windowHandle(), key, modifiers);
        settle();
    }
    /// The key that ends the program. Nothing may be looked at afterwards: on Windows, an event
    /// loop that runs inside the one that is to end makes the latter forget about it.
    void lastKey(Qt::Key key)
    {
        settle();
        QTest::keyClick(wizard.windowHandle(), key);
    }
    /// New buttons show up, and take the focus, with the next turn of the event loop.
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    /// Text of what has the focus: a button's, or a class name.
    [[nodiscard]] QString focus() const
    {
        settle();
        const QWidget *widget = QApplication::focusWidget();
        if (!widget)
            return {};
        const auto *control = qobject_cast<const QAbstractButton *>(widget);
        return control ? control->text() : QString::fromLatin1(widget->metaObject()->className());
    }
    /// What the Tab key walks over, from the title bar's first button on, once around.
    [[nodiscard]] QStringList tabOrder()
    {
        // The page before this one takes its time to go.
        if (!QTest::qWaitFor([this] { return !currentPage()->graphicsEffect(); }, kPatience))
            return {};
        titleBar->findChildren<QPushButton *>().first()->setFocus(Qt::TabFocusReason);
        const QString first = focus();
        QStringList stops;
        do {
            stops.append(focus());
            key(Qt::Key_Tab);
        } while (focus() != first && stops.size() < 20);
        return stops;
    }
};
