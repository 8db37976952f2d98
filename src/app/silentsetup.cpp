#include "app/silentsetup.h"

#include "bundle/bundle.h"
#include "bundle/unpack.h"
#include "engine/argumenttext.h"
#include "files/guardedfile.h"
#include "files/privatefolder.h"
#include "files/signature.h"
#include "system/desktop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kNotStarted = 3;

/// The file that "/LOG=" names; empty without that switch.
QString logFile()
{
    const QStringList arguments = QCoreApplication::arguments();
    for (const QString &argument : arguments) {
        if (argument.startsWith("/LOG="_L1, Qt::CaseInsensitive))
            return argument.sliced(5);
    }
    return {};
}

int fail(const QString &reason)
{
    if (QFile log(logFile()); !log.fileName().isEmpty() && log.open(QIODevice::Append)) {
        const QString time = QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss.zzz"_s);
        log.write((time + u"   " + reason + u"\r\n").toUtf8());
    }
    return kNotStarted;
}

} // namespace

bool hasSilentSwitch(int argc, const char *const *argv)
{
    for (int i = 1; i < argc; ++i) {
        if (qstricmp(argv[i], "/SILENT") == 0 || qstricmp(argv[i], "/VERYSILENT") == 0)
            return true;
    }
    return false;
}

int runSilently(const Bundle &bundle)
{
    const QString self = QCoreApplication::applicationFilePath();
    PrivateFolder folder;
    if (!folder.create())
        return fail(unpackFailure(folder.errorString(), bundle.size));
    folder.removeAbandoned();
    const QString engine = folder.filePath(kUnpackedEngine.toString());
    GuardedFile file;
    if (const QString error = unpackEngine(self, bundle, engine, file, [] { return true; });
        !error.isEmpty())
        return fail(error);
    if (isThisProgramSigned() && !isFromSamePublisher(self, engine))
        return fail(notOurSignatureSentence());

    QProcess process;
    process.setProgram(engine);
    setArgumentText(process, ownArgumentText());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(-1))
        return fail(process.errorString());
    file.release();
    systemDesktop().keepAwake(true);
    process.waitForFinished(-1);
    return process.exitCode();
}
