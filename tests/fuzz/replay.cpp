// Gives a fuzz program every file of the folders it is called with: what once found something, on
// each run of the tests and with any compiler.

#include "fuzz/fuzz.h"

#include <QDir>
#include <QFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString &name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "Cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            std::printf("%s\n", qPrintable(name));
            const QByteArray input = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                                   std::size_t(input.size()));
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "No inputs\n");
        return 1;
    }
    return 0;
}
