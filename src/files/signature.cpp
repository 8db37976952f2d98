#include "files/signature.h"

#include <QCoreApplication>
#include <QtEndian>

namespace {

/// A number at `place`, the smallest byte first; 0 where `bytes` end before.
template <typename Number>
qint64 numberAt(QByteArrayView bytes, qint64 place)
{
    if (place > bytes.size() - qsizetype(sizeof(Number)))
        return 0;
    return qFromLittleEndian<Number>(bytes.data() + place);
}

} // namespace

qint64 certificateTableEnd(QByteArrayView head)
{
    constexpr qint64 kPlaceOfHeader = 0x3c;
    constexpr qint64 kOptionalHeader = 24; // after "PE" and the file header
    constexpr qint64 kMagic64 = 0x20b;
    constexpr qint64 kDirectories32 = 96;
    constexpr qint64 kDirectories64 = 112;
    constexpr qint64 kCertificates = 4 * 8; // the fifth directory; each is a place and a size

    const qint64 header = numberAt<quint32>(head, kPlaceOfHeader);
    if (!head.startsWith("MZ") || header > head.size()
        || !head.sliced(header).startsWith(QByteArrayView("PE\0\0", 4)))
        return 0;
    const qint64 optional = header + kOptionalHeader;
    const qint64 directories = optional
        + (numberAt<quint16>(head, optional) == kMagic64 ? kDirectories64 : kDirectories32);
    // The only directory whose place counts in the file, not in memory.
    return numberAt<quint32>(head, directories + kCertificates)
        + numberAt<quint32>(head, directories + kCertificates + 4);
}

bool isFromSamePublisher(const QString &self, const QString &path)
{
    const QString publisher = trustedSigner(self);
    return !publisher.isEmpty() && trustedSigner(path) == publisher;
}

QString notOurSignatureSentence()
{
    return QCoreApplication::translate("Signature",
                                       "The setup engine is not signed by Varnel Solutions Team.");
}
