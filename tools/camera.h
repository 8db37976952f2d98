#pragma once

#include "wizard/wizardscene.h"

#include <QDir>
#include <QImage>

/// Longer than any entrance; after it only what moves for ever moves.
inline constexpr int kSettled = 1700; // ms

/// Lets the program run for so long.
void wait(int milliseconds);

/// Takes pictures of the real window with made-up data, and numbers them in a folder.
class Camera
{
public:
    explicit Camera(const QString &folder);

protected:
    void open(RunMode mode);
    /// Presses on to `page` and waits until it has come to rest.
    void goTo(PageId page);
    void shoot(const QString &name);
    /// A picture with the pointer over `widget`.
    void hover(QWidget *widget, const QString &name);
    /// A picture of where the keyboard is after a key that moves it.
    void tab(const QString &name, Qt::Key key = Qt::Key_Tab);
    /// Pictures of what follows a moment, each at its time in milliseconds.
    void film(const QString &name, std::initializer_list<int> times);
    template <typename Control>
    Control *control(const QString &text = {})
    {
        return m_scene.control<Control>(text);
    }

    WizardScene m_scene;

private:
    [[nodiscard]] QImage picture();
    void save(const QImage &picture, const QString &name);

    QDir m_folder;
    int m_count = 0;
};
