#include "bundle/unpack.h"

#include "bundle/bundle.h"
#include "files/guardedfile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr qint64 kPieceSize = 256 * 1024;
constexpr qint64 kMegabyte = 1024 * 1024;
constexpr auto kScannerTimeout = 2000ms;
constexpr auto kRetryInterval = 20ms;

QString tr(const char *text)
{
    return QCoreApplication::translate("Bundle", text);
}

/// Hands the next `size` bytes of `source` to `use`, piece by piece. False if one of them, or
/// `pause`, or a read fails.
bool forEachPiece(QFile &source, qint64 size, const std::function<bool()> &pause,
                  const std::function<bool(QByteArrayView)> &use)
{
    QByteArray piece(kPieceSize, Qt::Uninitialized);
    while (size > 0) {
        const qint64 length = source.read(piece.data(), qMin(size, kPieceSize));
        if (length <= 0 || !use(QByteArrayView(piece).first(length)) || !pause())
            return false;
        size -= length;
    }
    return true;
}

/// A virus scanner may have a new program open for a moment.
bool holdPatiently(GuardedFile &file, const QString &path)
{
    QDeadlineTimer deadline(kScannerTimeout);
    while (!file.hold(path)) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(kRetryInterval.count());
    }
    return true;
}

QString writeEngine(const QString &program, const Bundle &bundle, const QString &target,
                    GuardedFile &held, const std::function<bool()> &pause)
{
    const auto failure = [&](const QString &reason) { return unpackFailure(reason, bundle.size); };
    if (!isComplete(program, bundle))
        return damagedSentence();
    QFile source(program);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || !source.seek(bundle.offset))
        return failure(source.errorString());

    QFile copy(target);
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return failure(copy.errorString());
    copy.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    bool isWritten = true;
    const bool isCopied = forEachPiece(source, bundle.size, pause, [&](QByteArrayView piece) {
        return isWritten = copy.write(piece.data(), piece.size()) == piece.size();
    });
    if (!isWritten) // on a disk that is nearly full write() may store a part, without an error
        return failure(copy.error() != QFile::NoError ? copy.errorString()
                                                      : tr("There is no room on the disk"));
    copy.close();
    if (!isCopied) // no error: the program is shorter than its marker says, or `pause` said no
        return source.error() == QFile::NoError ? damagedSentence() : failure(source.errorString());

    if (!holdPatiently(held, target))
        return failure(held.errorString());
    QFile written(target);
    QCryptographicHash sum(QCryptographicHash::Sha256);
    const bool isRead = written.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
        && forEachPiece(written, bundle.size, pause, [&](QByteArrayView piece) {
                            sum.addData(piece);
                            return true;
                        });
    if (isRead && sum.result() == bundle.sha256)
        return {};
    held.release();
    return isRead ? damagedSentence() : failure(written.errorString());
}

} // namespace

QString damagedSentence()
{
    return tr("This setup file is damaged. Please download it again.");
}

QString unpackFailure(const QString &reason, qint64 size)
{
    QString sentence = reason;
    while (sentence.endsWith(u'.') || sentence.endsWith(u' '))
        sentence.chop(1);
    return tr("The setup engine cannot be unpacked: %1. It needs %2 MB in %3.")
        .arg(sentence, QString::number((size + kMegabyte - 1) / kMegabyte),
             QDir::toNativeSeparators(QDir::tempPath()));
}

QString unpackEngine(const QString &program, const Bundle &bundle, const QString &target,
                     GuardedFile &held, const std::function<bool()> &pause)
{
    const QString error = writeEngine(program, bundle, target, held, pause);
    if (!error.isEmpty())
        QFile::remove(target); // what was written may be what fills the disk
    return error;
}
