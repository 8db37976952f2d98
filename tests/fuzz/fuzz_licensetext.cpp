#include "fuzz/fuzz.h"
#include "pages/licensetext.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "a file");
}

/// Carriage returns are no part of a text.
QString textOf(QByteArray content)
{
    content.replace("\r", "");
    return QString::fromUtf8(content).trimmed();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir parent;
    static const QString folder = parent.filePath(u"bin"_s);
    static const bool isMade = QDir().mkpath(folder);
    require(isMade, "a folder");
    static const QString builtIn = licenseText(folder);

    FuzzInput input(data, size);
    const QByteArray beside = input.bytes(input.byte());
    const QByteArray above = input.rest();
    write(folder + u"/LICENSE.txt"_s, beside);
    write(parent.filePath(u"LICENSE.txt"_s), above);

    QString expected = textOf(beside);
    if (expected.isEmpty())
        expected = textOf(above);
    if (expected.isEmpty())
        expected = builtIn;
    requireEqual(licenseText(folder), expected, "license");
    return 0;
}
