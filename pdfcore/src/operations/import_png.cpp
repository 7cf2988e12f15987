// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_png.h"

#include "pdfcore/src/operations/exif_orientation.h"
#include "pdfcore/src/operations/picture_failure.h"
#include "pdfcore/src/operations/png_row_reader.h"
#include "pdfcore/src/operations/png_row_writer.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <vector>

#include <zlib.h>

namespace pdfcore {

namespace {

constexpr qint64 kSignatureBytes = 8;
constexpr qint64 kChunkHeaderBytes = 8; ///< Length and type.
constexpr qint64 kCheckSumBytes = 4;
constexpr qint64 kCopyBytes = qint64{64} << 10;

/// Bytes that one byte of Deflate stands for at most, by its longest match in the fewest bits.
constexpr qint64 kMaxExpansion = 1032;

/// Rows of an interlaced picture that are put together at a time, in bytes.
constexpr qint64 kBandBytes = qint64{32} << 20;

using Samples = PngRowReader::Samples;
using RowTaker = std::function<void(const unsigned char *row)>;

PictureFailure endsTooEarly()
{
    return invalidPicture(QStringLiteral("The file ends too early."));
}

void readFully(QFile &file, unsigned char *bytes, qint64 count)
{
    if (file.read(reinterpret_cast<char *>(bytes), count) != count) {
        throw endsTooEarly();
    }
}

/// Calls `take` with the length of each chunk of image data, at the beginning of its content; it
/// has to move behind that.
void visitImageData(QFile &file, const std::function<void(qint64 length, quint32 sum)> &take)
{
    std::array<unsigned char, kChunkHeaderBytes> header{};
    bool hasBegun = false;
    qint64 place = kSignatureBytes;
    while (true) {
        if (!file.seek(place)) {
            throw endsTooEarly();
        }
        readFully(file, header.data(), kChunkHeaderBytes);
        const qint64 length = qFromBigEndian<quint32>(header.data());
        if (place + kChunkHeaderBytes + length + kCheckSumBytes > file.size()) {
            throw endsTooEarly();
        }
        if (std::memcmp(header.data() + 4, "IDAT", 4) == 0) {
            take(length, static_cast<quint32>(crc32(0, header.data() + 4, 4)));
            hasBegun = true;
        } else if (hasBegun) {
            return;
        }
        place += kChunkHeaderBytes + length + kCheckSumBytes;
    }
}

void openFile(QFile &file)
{
    if (!file.open(QIODevice::ReadOnly)) {
        throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
    }
}

/// The file has all of its chunks, and they can hold the picture. Without this a few bytes would
/// pass for a picture of any size.
void checkImageData(const QString &path, const PngHeader &header)
{
    QFile file(path);
    openFile(file);
    qint64 bytes = 0;
    visitImageData(file, [&](qint64 length, quint32 /*sum*/) { bytes += length; });
    if (!header.isInterlaced && bytes < header.height * (header.rowBytes() + 1) / kMaxExpansion) {
        throw invalidPicture(QStringLiteral("There is too little data for the picture."));
    }
}

/// Hands over all rows in order. Those of an interlaced picture are put together in bands, for
/// each of which the file is read once more, so that memory does not grow with the height.
void visitRows(const QString &path, Samples samples, const PdfCancelFlag &cancel,
               const RowTaker &take)
{
    int first = 0;
    int height = 1;
    while (first < height) {
        PngRowReader reader(path);
        reader.start(samples);
        height = reader.header().height;
        const auto rowBytes = static_cast<std::size_t>(reader.rowBytes());
        const bool isWhole = reader.passes() == 1;
        const qint64 fitting =
            std::max<qint64>(1, kBandBytes / std::max<qint64>(1, reader.rowBytes()));
        const int count = isWhole ? 1 : static_cast<int>(std::min<qint64>(fitting, height - first));
        std::vector<unsigned char> rows(rowBytes * static_cast<std::size_t>(count));
        for (int pass = 0; pass < reader.passes(); ++pass) {
            for (int y = 0; y < height; ++y) {
                throwIfCancelled(cancel);
                const bool isWanted = isWhole || (y >= first && y - first < count);
                const int kept = isWhole ? 0 : y - first;
                reader.readRow(isWanted ? rows.data() + rowBytes * static_cast<std::size_t>(kept)
                                        : nullptr);
                if (isWhole) {
                    take(rows.data());
                }
            }
        }
        if (isWhole) {
            return;
        }
        for (int i = 0; i < count; ++i) {
            take(rows.data() + rowBytes * static_cast<std::size_t>(i));
        }
        first += count;
    }
}

/// Whether no pixel lets anything through. Decodes the picture, up to the first that does.
bool isOpaque(const QString &path, const PdfCancelFlag &cancel)
{
    PngRowReader reader(path);
    reader.start(Samples::WithAlpha);
    const auto sampleBytes = static_cast<std::size_t>(reader.header().bits == 16 ? 2 : 1);
    const auto width = static_cast<std::size_t>(reader.header().width);
    const auto rowBytes = static_cast<std::size_t>(reader.rowBytes());
    const std::size_t pixelBytes = rowBytes / width;
    std::vector<unsigned char> row(rowBytes);
    for (int pass = 0; pass < reader.passes(); ++pass) {
        for (int y = 0; y < reader.header().height; ++y) {
            throwIfCancelled(cancel);
            // A pass of an interlaced picture leaves the pixels of the others alone.
            std::fill(row.begin(), row.end(), static_cast<unsigned char>(0xFF));
            reader.readRow(row.data());
            for (std::size_t end = pixelBytes; end <= rowBytes; end += pixelBytes) {
                if (row[end - 1] != 0xFF || row[end - sampleBytes] != 0xFF) {
                    return false;
                }
            }
        }
    }
    return true;
}

/// Copies `count` bytes of each pixel, from `offset` within it.
void pick(const unsigned char *row, std::size_t pixelBytes, std::size_t offset, std::size_t count,
          std::vector<unsigned char> &picked)
{
    const unsigned char *from = row + offset;
    for (std::size_t to = 0; to + count <= picked.size(); to += count) {
        std::memcpy(picked.data() + to, from, count);
        from += pixelBytes;
    }
}

} // namespace

ImportedPicture inspectPng(const QString &path, const PdfCancelFlag &cancel)
{
    const PngRowReader reader(path);
    const PngHeader &header = reader.header();
    checkImageData(path, header);
    ImportedPicture picture;
    picture.coding =
        header.isInterlaced || header.hasAlpha ? PictureCoding::PngRows : PictureCoding::PngData;
    picture.pixels = QSize(header.width, header.height);
    picture.bits = header.bits;
    picture.palette = header.palette;
    picture.profile = header.profile;
    picture.orientation = exifOrientation(header.exif);
    const int colours = header.hasAlpha ? header.channels - 1 : header.channels;
    picture.components = header.palette.isEmpty() ? colours : 3;
    if ((header.hasAlpha || header.hasTransparency) && !isOpaque(path, cancel)) {
        picture.maskBits = header.bits == 16 ? 16 : 8;
    }
    return picture;
}

void writePngData(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    QFile file(path);
    openFile(file);
    std::vector<unsigned char> buffer(static_cast<std::size_t>(kCopyBytes));
    visitImageData(file, [&](qint64 length, quint32 sum) {
        uLong ownSum = sum;
        for (qint64 left = length; left > 0;) {
            throwIfCancelled(cancel);
            const qint64 part = std::min(left, kCopyBytes);
            readFully(file, buffer.data(), part);
            ownSum = crc32(ownSum, buffer.data(), static_cast<uInt>(part));
            sink(buffer.data(), static_cast<std::size_t>(part));
            left -= part;
        }
        std::array<unsigned char, kCheckSumBytes> stored{};
        readFully(file, stored.data(), kCheckSumBytes);
        if (qFromBigEndian<quint32>(stored.data()) != ownSum) {
            throw invalidPicture(QStringLiteral("The data of the picture is damaged."));
        }
    });
}

void writePngRows(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    const PngHeader header = PngRowReader(path).header();
    const int channels = header.hasAlpha ? header.channels - 1 : header.channels;
    PngRowWriter writer({header.width, header.height}, channels, header.bits,
                        header.palette.isEmpty() ? PngRowWriter::Relation::Near
                                                 : PngRowWriter::Relation::None,
                        sink);
    if (!header.hasAlpha) {
        visitRows(path, Samples::Stored, cancel,
                  [&](const unsigned char *row) { writer.writeRow(row); });
        writer.finish();
        return;
    }
    const auto sampleBytes = static_cast<std::size_t>(header.bits / 8);
    const std::size_t pixelBytes = sampleBytes * static_cast<std::size_t>(header.channels);
    const std::size_t colourBytes = pixelBytes - sampleBytes;
    std::vector<unsigned char> colours(colourBytes * static_cast<std::size_t>(header.width));
    visitRows(path, Samples::Stored, cancel, [&](const unsigned char *row) {
        pick(row, pixelBytes, 0, colourBytes, colours);
        writer.writeRow(colours.data());
    });
    writer.finish();
}

void writePngMask(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    const PngHeader header = PngRowReader(path).header();
    const int bits = header.bits == 16 ? 16 : 8;
    PngRowWriter writer({header.width, header.height}, 1, bits, PngRowWriter::Relation::Near, sink);
    const auto sampleBytes = static_cast<std::size_t>(bits / 8);
    const bool isGrey = header.channels <= 2 && header.palette.isEmpty();
    const std::size_t pixelBytes = sampleBytes * (isGrey ? 2 : 4);
    std::vector<unsigned char> alpha(sampleBytes * static_cast<std::size_t>(header.width));
    visitRows(path, Samples::WithAlpha, cancel, [&](const unsigned char *row) {
        pick(row, pixelBytes, pixelBytes - sampleBytes, sampleBytes, alpha);
        writer.writeRow(alpha.data());
    });
    writer.finish();
}

} // namespace pdfcore
