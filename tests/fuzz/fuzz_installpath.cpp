#include "engine/installpath.h"
#include "fuzz/fuzz.h"

#include <QDir>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = QString::fromUtf8(FuzzInput(data, size).rest());

    static const QRegularExpression root(uR"(\A(/|[A-Za-z]:[/\\]?)\z)"_s);
    requireEqual(isDriveRoot(path), root.match(path).hasMatch(), "drive root");

    const QString folder = installFolder(path);
    require(!isDriveRoot(folder), "nothing goes straight into a root");
    requireEqual(installFolder(folder), folder, "what is settled stays");

    static const QRegularExpression drive(uR"(\A[A-Za-z]:)"_s);
    QString clean = QDir::cleanPath(path);
    if (drive.match(clean).hasMatch())
        clean = QDir::cleanPath(clean.replace(u'\\', u'/'));
    if (root.match(clean).hasMatch()) {
        requireEqual(folder, QString(clean + u"/Varnel Schematics"_s).replace(u"//"_s, u"/"_s),
                     "folder in a root");
    } else {
        requireEqual(folder, clean, "any other folder as it stands");
    }
    return 0;
}
