// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/png_row_writer.h"

#include "pdfcore/src/operations/picture_failure.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <utility>

#include <png.h>

namespace pdfcore {

namespace {

constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kChunkHeaderBytes = 8; ///< Length and type.
constexpr std::size_t kCheckSumBytes = 4;

/// Takes a PNG file in pieces of any length and passes on what its IDAT chunks contain.
class ImageDataFilter
{
public:
    explicit ImageDataFilter(ByteSink sink)
        : m_sink(std::move(sink))
    {}

    void take(const unsigned char *bytes, std::size_t count)
    {
        while (count > 0) {
            const std::size_t part = std::min(count, m_left);
            if (m_isHeader) {
                std::memcpy(m_header.data() + kChunkHeaderBytes - m_left, bytes, part);
            } else {
                const std::size_t data = m_left > kCheckSumBytes ? m_left - kCheckSumBytes : 0;
                if (m_isData && data > 0) {
                    m_sink(bytes, std::min(part, data));
                }
            }
            bytes += part;
            count -= part;
            m_left -= part;
            if (m_left == 0) {
                turn();
            }
        }
    }

private:
    /// From the header of a chunk to its content, or from that to the next chunk.
    void turn()
    {
        if (!m_isHeader) {
            m_isHeader = true;
            m_left = kChunkHeaderBytes;
            return;
        }
        m_isHeader = false;
        m_left = png_get_uint_32(m_header.data()) + kCheckSumBytes;
        m_isData = std::memcmp(m_header.data() + 4, "IDAT", 4) == 0;
    }

    ByteSink m_sink;
    std::array<unsigned char, kChunkHeaderBytes> m_header{};
    std::size_t m_left = kSignatureBytes; ///< Of the header, or of a content with its check sum.
    bool m_isHeader = false;
    bool m_isData = false;
};

} // namespace

struct PngRowWriter::Library
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    ImageDataFilter filter;
    std::exception_ptr thrown; ///< By the sink.

    explicit Library(ByteSink sink)
        : filter(std::move(sink))
    {}
    ~Library() { png_destroy_write_struct(&png, &info); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    /// False when the sink does not take them.
    bool pass(const unsigned char *bytes, std::size_t count)
    {
        try {
            filter.take(bytes, count);
            return true;
        } catch (...) {
            thrown = std::current_exception();
            return false;
        }
    }

    static void write(png_structp png, png_bytep bytes, std::size_t count)
    {
        if (!static_cast<Library *>(png_get_io_ptr(png))->pass(bytes, count)) {
            png_error(png, "");
        }
    }
    static void flush(png_structp /*png*/) {}
    [[noreturn]] static void fail(png_structp png, png_const_charp /*message*/)
    {
        png_longjmp(png, 1);
    }
    static void discardWarning(png_structp /*png*/, png_const_charp /*message*/) {}
};

PngRowWriter::PngRowWriter(QSize pixels, int channels, int bits, Relation relation, ByteSink sink)
    : m_library(std::make_unique<Library>(std::move(sink)))
{
    m_library->png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &Library::fail,
                                             &Library::discardWarning);
    m_library->info = m_library->png != nullptr ? png_create_info_struct(m_library->png) : nullptr;
    check(m_library->info != nullptr && start(pixels, channels, bits, relation));
}

PngRowWriter::~PngRowWriter() = default;

void PngRowWriter::check(bool isDone)
{
    if (m_library->thrown) {
        std::rethrow_exception(m_library->thrown);
    }
    if (!isDone) {
        throw invalidPicture(QStringLiteral("The picture cannot be compressed."));
    }
}

// In the following functions nothing lives across a jump that is not a member.

bool PngRowWriter::start(QSize pixels, int channels, int bits, Relation relation)
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        return false;
    }
    png_set_write_fn(m_library->png, m_library.get(), &Library::write, &Library::flush);
    png_set_IHDR(m_library->png, m_library->info, static_cast<png_uint_32>(pixels.width()),
                 static_cast<png_uint_32>(pixels.height()), bits,
                 channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(m_library->png, PNG_FILTER_TYPE_BASE,
                   relation == Relation::Near && bits >= 8 ? PNG_ALL_FILTERS : PNG_FILTER_NONE);
    png_write_info(m_library->png, m_library->info);
    return true;
}

bool PngRowWriter::compressRow(const unsigned char *row)
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        return false;
    }
    png_write_row(m_library->png, row);
    return true;
}

bool PngRowWriter::compressRest()
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        return false;
    }
    png_write_end(m_library->png, nullptr);
    return true;
}

void PngRowWriter::writeRow(const unsigned char *row)
{
    check(compressRow(row));
}

void PngRowWriter::finish()
{
    check(compressRest());
}

} // namespace pdfcore
