#include "bundle/bundle.h"

#include "files/signature.h"

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

} // namespace

std::optional<Bundle> parseBundleMarker(QByteArrayView marker)
{
    Q_ASSERT(marker.size() == kMarkerSize);
    const Bundle bundle { .offset = qFromLittleEndian<qint64>(marker.data() + kOffsetPlace),
                          .size = qFromLittleEndian<qint64>(marker.data() + kSizePlace),
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

bool isComplete(const QString &program, const Bundle &bundle)
{
    QFile file(program);
    if (bundle.offset <= 0 || bundle.size <= 0 || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(kHeadSize);
    return bundle.size <= file.size() - bundle.offset && certificateTableEnd(head) <= file.size();
}
