// Writes the window icon to a folder, each of its sizes as <side>.png; tools/assets/make-icon makes
// the program's icon for Windows of them, so that both are the same drawing.

#include "app/applicationicon.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: varnel-iconpictures <folder>\n");
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QIcon icon = applicationIcon();
    for (const QSize &size : icon.availableSizes()) {
        const QString file = folder.filePath(u"%1.png"_s.arg(size.width()));
        if (!icon.pixmap(size).save(file)) {
            std::fprintf(stderr, "Cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return icon.isNull() ? 1 : 0;
}
