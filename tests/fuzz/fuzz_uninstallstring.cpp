// What the list of installed programs says of an uninstaller: any text, with and without a folder
// that has one.

#include "fuzz/fuzz.h"
#include "support/sandbox.h"
#include "system/installation.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Sandbox sandbox;
    static const QString real = sandbox.write(u"a folder/unins000.exe"_s, "program");
    static const QString folder = sandbox.path(u"a folder"_s);

    FuzzInput input(data, size);
    const std::uint8_t choice = input.byte();
    const QString marker = u"%P"_s;
    const QString recorded = QString::fromUtf8(input.rest()).replace(marker, real).remove(QChar(0));
    const QString location = choice & 1 ? folder + QString(choice >> 6, u'/') : QString();
    sandbox.recordInstallation(u"1.6.8"_s, location, recorded);

    QString expected = recorded.trimmed();
    if (expected.size() >= 2 && expected.front() == u'"' && expected.back() == u'"')
        expected = expected.mid(1, expected.size() - 2);
    if (expected.isEmpty() && !location.isEmpty())
        expected = real;
    if (!QFileInfo::exists(expected))
        expected.clear();
    requireEqual(uninstallerPath(), QDir::toNativeSeparators(expected), "uninstaller");
    return 0;
}
