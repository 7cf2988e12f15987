// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/exif_orientation.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace pdfcore {

namespace {

constexpr quint16 kTiff = 42;
constexpr quint16 kOrientation = 0x0112;
constexpr quint16 kShort = 3;
constexpr qsizetype kEntryBytes = 12;

/// By the number that stands for it.
constexpr std::array<QImageIOHandler::Transformation, 9> kTransformations = {
    QImageIOHandler::TransformationNone,      QImageIOHandler::TransformationNone,
    QImageIOHandler::TransformationMirror,    QImageIOHandler::TransformationRotate180,
    QImageIOHandler::TransformationFlip,      QImageIOHandler::TransformationFlipAndRotate90,
    QImageIOHandler::TransformationRotate90,  QImageIOHandler::TransformationMirrorAndRotate90,
    QImageIOHandler::TransformationRotate270,
};

/// Numbers in the byte order that the data are in; 0 beyond their end.
class TiffNumbers
{
public:
    explicit TiffNumbers(const QByteArray &bytes)
        : m_bytes(bytes)
        , m_isBigEndian(bytes.startsWith("MM"))
    {}

    [[nodiscard]] quint16 shortAt(qsizetype place) const { return at<quint16>(place); }
    [[nodiscard]] quint32 longAt(qsizetype place) const { return at<quint32>(place); }

private:
    template <typename Number>
    [[nodiscard]] Number at(qsizetype place) const
    {
        if (place > m_bytes.size() - static_cast<qsizetype>(sizeof(Number))) {
            return 0;
        }
        const char *from = m_bytes.constData() + place;
        return m_isBigEndian ? qFromBigEndian<Number>(from) : qFromLittleEndian<Number>(from);
    }

    const QByteArray &m_bytes;
    bool m_isBigEndian;
};

} // namespace

QImageIOHandler::Transformations exifOrientation(const QByteArray &exif)
{
    const TiffNumbers numbers(exif);
    if (!(exif.startsWith("MM") || exif.startsWith("II")) || numbers.shortAt(2) != kTiff) {
        return QImageIOHandler::TransformationNone;
    }
    const qsizetype directory = numbers.longAt(4);
    const qsizetype count = numbers.shortAt(directory);
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype entry = directory + 2 + i * kEntryBytes;
        if (numbers.shortAt(entry) == kOrientation && numbers.shortAt(entry + 2) == kShort) {
            const std::size_t value = numbers.shortAt(entry + 8);
            return value < kTransformations.size() ? kTransformations.at(value)
                                                   : QImageIOHandler::TransformationNone;
        }
    }
    return QImageIOHandler::TransformationNone;
}

} // namespace pdfcore
