// The least that a program with a window can be: what ours weighs and takes is compared with it.

#include <QApplication>
#include <QLabel>
#include <QWidget>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(680, 474);
    QLabel text(QStringLiteral("Any window has some text."), &window);
    window.show();
    return QApplication::exec();
}
