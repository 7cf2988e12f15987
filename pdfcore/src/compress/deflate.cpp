// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/deflate.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include <libdeflate.h>
#include <zlib.h>

namespace pdfcore {

namespace {

/// Bytes between looks at whether the work was cancelled.
constexpr qsizetype kChunk = qsizetype{1} << 20;
constexpr int kBestLevel = 12;
constexpr std::size_t kFilters = 5;

struct FreeCompressor
{
    void operator()(libdeflate_compressor *compressor) const
    {
        libdeflate_free_compressor(compressor);
    }
};

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor *decompressor) const
    {
        libdeflate_free_decompressor(decompressor);
    }
};

/// What PNG's fifth filter expects (ISO/IEC 15948, 9.4).
int paeth(int left, int above, int corner)
{
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) {
        return left;
    }
    return toAbove <= toCorner ? above : corner;
}

/// A row through a filter, and how far its bytes are from zero in sum.
long long filterRow(std::size_t filter, const unsigned char *row, const unsigned char *before,
                    std::size_t length, std::size_t step, unsigned char *out)
{
    long long sum = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const int left = i >= step ? row[i - step] : 0;
        const int above = before[i];
        const int corner = i >= step ? before[i - step] : 0;
        int expected = 0;
        switch (filter) {
        case 1:
            expected = left;
            break;
        case 2:
            expected = above;
            break;
        case 3:
            expected = (left + above) / 2;
            break;
        case 4:
            expected = paeth(left, above, corner);
            break;
        default:
            break;
        }
        out[i] = static_cast<unsigned char>(row[i] - expected);
        sum += std::abs(static_cast<int>(static_cast<signed char>(out[i])));
    }
    return sum;
}

QByteArray deflatedByLibdeflate(const QByteArray &bytes)
{
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(kBestLevel));
    if (!compressor) {
        return {};
    }
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), size);
    QByteArray packed(static_cast<qsizetype>(bound), Qt::Uninitialized);
    const std::size_t length =
        libdeflate_zlib_compress(compressor.get(), bytes.constData(), size, packed.data(), bound);
    packed.resize(static_cast<qsizetype>(length));
    packed.squeeze();
    return packed;
}

/// Of what comes again and again zlib makes less than libdeflate does in the same time; and it can
/// be cancelled.
QByteArray deflatedByZlib(const QByteArray &bytes, int level, const PdfCancelFlag &cancel)
{
    z_stream stream{};
    if (deflateInit(&stream, level) != Z_OK) {
        return {};
    }
    const std::unique_ptr<z_stream, decltype(&deflateEnd)> end(&stream, &deflateEnd);
    const auto bound =
        static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(bytes.size())));
    QByteArray packed(bound, Qt::Uninitialized);
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(bound);
    for (qsizetype begin = 0; begin <= bytes.size(); begin += kChunk) {
        const qsizetype length = qMin(kChunk, bytes.size() - begin);
        const bool isLast = begin + length == bytes.size();
        // zlib does not write to what it compresses.
        stream.next_in =
            const_cast<Bytef *>(reinterpret_cast<const Bytef *>(bytes.constData() + begin));
        stream.avail_in = static_cast<uInt>(length);
        const int result = deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
        if (cancel.isSet() || result != (isLast ? Z_STREAM_END : Z_OK)) {
            return {};
        }
        if (isLast) {
            break;
        }
    }
    packed.resize(static_cast<qsizetype>(stream.total_out));
    packed.squeeze();
    return packed;
}

} // namespace

QByteArray deflated(const QByteArray &bytes, Effort effort, const PdfCancelFlag &cancel)
{
    if (effort == Effort::Best) {
        return deflatedByLibdeflate(bytes);
    }
    return deflatedByZlib(bytes, effort == Effort::Good ? Z_BEST_COMPRESSION : Z_BEST_SPEED,
                          cancel);
}

std::optional<QByteArray> inflated(const QByteArray &bytes)
{
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    if (!decompressor) {
        return std::nullopt;
    }
    qsizetype capacity = qMax(qsizetype{4096}, bytes.size() * 4);
    while (true) {
        QByteArray plain(capacity, Qt::Uninitialized);
        std::size_t read = 0;
        std::size_t length = 0;
        const libdeflate_result result = libdeflate_zlib_decompress_ex(
            decompressor.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()),
            plain.data(), static_cast<std::size_t>(capacity), &read, &length);
        if (result == LIBDEFLATE_SUCCESS) {
            plain.resize(static_cast<qsizetype>(length));
            return plain;
        }
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || capacity >= kMaxPackedBytes) {
            return std::nullopt;
        }
        capacity = qMin(capacity * 4, kMaxPackedBytes);
    }
}

QByteArray filteredRows(const QByteArray &samples, int components, int width,
                        const PdfCancelFlag &cancel)
{
    const auto step = static_cast<std::size_t>(components);
    const std::size_t stride = step * static_cast<std::size_t>(width);
    const std::size_t rows = static_cast<std::size_t>(samples.size()) / stride;
    QByteArray out(static_cast<qsizetype>(rows * (stride + 1)), Qt::Uninitialized);
    const std::vector<unsigned char> nothing(stride);
    std::vector<unsigned char> best(stride);
    std::vector<unsigned char> tried(stride);
    const auto *row = reinterpret_cast<const unsigned char *>(samples.constData());
    const unsigned char *before = nothing.data();
    auto *target = reinterpret_cast<unsigned char *>(out.data());
    for (std::size_t y = 0; y < rows; ++y) {
        if (cancel.isSet()) {
            return {};
        }
        long long least = std::numeric_limits<long long>::max();
        std::size_t chosen = 0;
        for (std::size_t filter = 0; filter < kFilters; ++filter) {
            const long long sum = filterRow(filter, row, before, stride, step, tried.data());
            if (sum < least) {
                least = sum;
                chosen = filter;
                best.swap(tried);
            }
        }
        *target = static_cast<unsigned char>(chosen);
        std::memcpy(target + 1, best.data(), stride);
        target += stride + 1;
        before = row;
        row += stride;
    }
    return out;
}

} // namespace pdfcore
