#include "bundlefile.h"

#include "support/sandbox.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray kProgram(1000, 'p');

QByteArray noise(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    std::generate(bytes.begin(), bytes.end(), [&] {
        state = state * 1664525 + 1013904223;
        return char(state >> 24);
    });
    return bytes;
}

} // namespace

BundleFile::BundleFile(const Sandbox &sandbox, qsizetype engineSize)
    : engine(noise(engineSize)),
      bundle { .offset = kProgram.size(),
               .size = engineSize,
               .sha256 = QCryptographicHash::hash(engine, QCryptographicHash::Sha256) },
      path(sandbox.write(u"bundle.exe"_s, kProgram + engine + "what follows"))
{}

void BundleFile::alter(qint64 place) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    char byte = 0;
    QVERIFY(file.seek(place) && file.getChar(&byte));
    QVERIFY(file.seek(place) && file.putChar(char(~byte)));
}
