#include "bundle/bundle.h"

#include <QFile>
#include <QtEndian>

namespace {

constexpr qsizetype kOffsetPlace = 16;
constexpr qsizetype kSizePlace = 24;
constexpr qsizetype kSumPlace = 32;
constexpr qsizetype kMarkerSize = 64;

constexpr qsizetype kHeadSize = 4096;

// tools/bundle looks for these 16 bytes in the finished program, where they have to be just once,
// and fills in what follows. Volatile, or the compiler would take the zeros for what will be read.
alignas(16) const volatile char kMarker[kMarkerSize] = { 'V', 'A', 'R', 'N', 'E', 'L', '-', 'E',
                                                         'N', 'G', 'I', 'N', 'E', '-', '1', ':' };

/// A number at `place`, the smallest byte first; 0 where `bytes` end before.
template <typename Number>
qint64 numberAt(QByteArrayView bytes, qsizetype place)
{
    if (place < 0 || place > bytes.size() - qsizetype(sizeof(Number)))
        return 0;
    return qint64(qFromLittleEndian<Number>(bytes.data() + place));
}

} // namespace

std::optional<Bundle> parseBundleMarker(QByteArrayView marker)
{
    const Bundle bundle { .offset = numberAt<qint64>(marker, kOffsetPlace),
                          .size = numberAt<qint64>(marker, kSizePlace),
                          .sha256 = marker.sliced(kSumPlace).toByteArray() };
    if (bundle.offset == 0 && bundle.size == 0)
        return std::nullopt;
    return bundle;
}

std::optional<Bundle> carriedBundle()
{
    QByteArray marker;
    for (const volatile char &byte : kMarker)
        marker.append(byte);
    return parseBundleMarker(marker);
}

qint64 certificateTableEnd(QByteArrayView head)
{
    constexpr qsizetype kPlaceOfHeader = 0x3c;
    constexpr qsizetype kOptionalHeader = 24; // after the signature "PE" and the file header
    constexpr qint64 kMagic64 = 0x20b;
    constexpr qsizetype kDirectories32 = 96;
    constexpr qsizetype kDirectories64 = 112;
    constexpr qsizetype kCertificates = 4 * 8; // the fifth directory; each is a place and a size

    if (!head.startsWith("MZ"))
        return 0;
    const qsizetype header = qsizetype(numberAt<quint32>(head, kPlaceOfHeader));
    if (header > head.size() || !head.sliced(header).startsWith(QByteArrayView("PE\0\0", 4)))
        return 0;
    const qsizetype optional = header + kOptionalHeader;
    const qsizetype directories = optional
        + (numberAt<quint16>(head, optional) == kMagic64 ? kDirectories64 : kDirectories32);
    // The only directory whose place counts in the file, not in memory.
    return numberAt<quint32>(head, directories + kCertificates)
        + numberAt<quint32>(head, directories + kCertificates + 4);
}

bool isComplete(const QString &program, const Bundle &bundle)
{
    QFile file(program);
    if (bundle.offset <= 0 || bundle.size <= 0 || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(kHeadSize);
    return file.size() >= qMax(bundle.offset + bundle.size, certificateTableEnd(head));
}
