// Where an installation goes, part by part of the path.

#include "files/installpath.h"
#include "fuzz/fuzz.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The path without empty parts, "." and "..", as far as it does not climb out of what it names; a
/// root has nothing above it. A drive stays as it is.
QString slowClean(QString path)
{
    static const QRegularExpression withDrive(uR"(\A[A-Za-z]:)"_s);
    const QString drive = withDrive.match(path).captured();
    path = path.mid(drive.size());
    if (!drive.isEmpty())
        path.replace(u'\\', u'/');
    const bool isAbsolute = path.startsWith(u'/');
    QStringList clean;
    for (const QString &part : path.split(u'/')) {
        if (part.isEmpty() || part == u".")
            continue;
        if (part == u".." && !clean.isEmpty() && clean.last() != u"..")
            clean.removeLast();
        else if (part != u".." || !isAbsolute)
            clean.append(part);
    }
    if (clean.isEmpty() && !isAbsolute && !path.isEmpty())
        clean.append(u"."_s);
    // Nothing of a name is left of it on Windows.
    static const QRegularExpression noName(uR"(\A[ .]*\z)"_s);
    if (!drive.isEmpty() && noName.match(clean.join(QString())).hasMatch())
        return drive + u'/';
    return drive + (isAbsolute ? u"/"_s : u""_s) + clean.join(u'/');
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = QString::fromUtf8(FuzzInput(data, size).rest());

    static const QRegularExpression root(uR"(\A(/|[A-Za-z]:[/\\]?)\z)"_s);
    requireEqual(isDriveRoot(path), root.match(path).hasMatch(), "drive root");

    const QString folder = installFolder(path);
    require(!isDriveRoot(folder), "nothing goes straight into a root");
    requireEqual(installFolder(folder), folder, "what is settled stays");

    // What is left of a path may have a drive where it had none.
    const QString clean = slowClean(slowClean(path));
    if (root.match(clean).hasMatch()) {
        requireEqual(folder, QString(clean + u"/Varnel Schematics"_s).replace(u"//"_s, u"/"_s),
                     "folder in a root");
    } else {
        requireEqual(folder, clean, "any other folder as it stands");
    }
    return 0;
}
