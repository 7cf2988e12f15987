// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/png_row_reader.h"

#include "pdfcore/src/operations/picture_failure.h"

#include <array>
#include <cstdio>

#include <png.h>

namespace pdfcore {

struct PngRowReader::Library
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::array<char, 160> reason{};

    Library() = default;
    ~Library() { png_destroy_read_struct(&png, &info, nullptr); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

namespace {

using Reason = std::array<char, 160>;

[[noreturn]] void fail(png_structp png, png_const_charp message)
{
    auto *reason = static_cast<Reason *>(png_get_error_ptr(png));
    std::snprintf(reason->data(), reason->size(), "%s", message);
    png_longjmp(png, 1);
}

void discardWarning(png_structp /*png*/, png_const_charp /*message*/) {}

void readBytes(png_structp png, png_bytep bytes, std::size_t count)
{
    auto *file = static_cast<QFile *>(png_get_io_ptr(png));
    if (file->read(reinterpret_cast<char *>(bytes), static_cast<qint64>(count)) !=
        static_cast<qint64>(count)) {
        png_error(png, "The file ends too early.");
    }
}

[[noreturn]] void throwReason(const Reason &reason)
{
    throw invalidPicture(QString::fromLocal8Bit(reason.data()));
}

} // namespace

PngRowReader::PngRowReader(const QString &path)
    : m_file(path)
    , m_library(std::make_unique<Library>())
{
    if (!m_file.open(QIODevice::ReadOnly)) {
        throw PictureFailure(PdfOperationError::FileNotFound, m_file.errorString());
    }
    m_library->png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, &m_library->reason, &fail, &discardWarning);
    m_library->info = m_library->png != nullptr ? png_create_info_struct(m_library->png) : nullptr;
    if (m_library->info == nullptr) {
        throw invalidPicture(QStringLiteral("There is not enough memory."));
    }
    if (!readHeader()) {
        throwReason(m_library->reason);
    }
    takeHeader();
}

PngRowReader::~PngRowReader() = default;

// In the following functions nothing lives across a jump that is not a member.

bool PngRowReader::readHeader()
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        return false;
    }
    png_set_read_fn(m_library->png, &m_file, &readBytes);
    png_read_info(m_library->png, m_library->info);
    return true;
}

bool PngRowReader::startRows(bool withAlpha)
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        return false;
    }
    if (withAlpha) {
        png_set_expand(m_library->png);
    }
    m_passes = png_set_interlace_handling(m_library->png);
    png_read_update_info(m_library->png, m_library->info);
    m_rowBytes = static_cast<qsizetype>(png_get_rowbytes(m_library->png, m_library->info));
    return true;
}

void PngRowReader::takeHeader()
{
    const png_structp png = m_library->png;
    const png_infop info = m_library->info;
    const int colour = png_get_color_type(png, info);
    m_header.width = static_cast<int>(png_get_image_width(png, info));
    m_header.height = static_cast<int>(png_get_image_height(png, info));
    m_header.bits = png_get_bit_depth(png, info);
    m_header.channels = png_get_channels(png, info);
    m_header.hasAlpha = (colour & PNG_COLOR_MASK_ALPHA) != 0;
    m_header.hasTransparency = !m_header.hasAlpha && png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    m_header.isInterlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
    png_colorp colours = nullptr;
    int count = 0;
    if (colour == PNG_COLOR_TYPE_PALETTE &&
        png_get_PLTE(png, info, &colours, &count) == PNG_INFO_PLTE) {
        for (int i = 0; i < count; ++i) {
            m_header.palette.append(static_cast<char>(colours[i].red));
            m_header.palette.append(static_cast<char>(colours[i].green));
            m_header.palette.append(static_cast<char>(colours[i].blue));
        }
    }
    png_charp name = nullptr;
    int compression = 0;
    png_bytep profile = nullptr;
    png_uint_32 length = 0;
    if (png_get_iCCP(png, info, &name, &compression, &profile, &length) == PNG_INFO_iCCP) {
        m_header.profile =
            QByteArray(reinterpret_cast<const char *>(profile), static_cast<qsizetype>(length));
    }
#ifdef PNG_eXIf_SUPPORTED
    png_bytep exif = nullptr;
    png_uint_32 exifLength = 0;
    if (png_get_eXIf_1(png, info, &exifLength, &exif) == PNG_INFO_eXIf) {
        m_header.exif =
            QByteArray(reinterpret_cast<const char *>(exif), static_cast<qsizetype>(exifLength));
    }
#endif
}

void PngRowReader::start(Samples samples)
{
    if (!startRows(samples == Samples::WithAlpha)) {
        throwReason(m_library->reason);
    }
}

void PngRowReader::readRow(unsigned char *row)
{
    if (setjmp(png_jmpbuf(m_library->png)) != 0) {
        throwReason(m_library->reason);
    }
    png_read_row(m_library->png, row, nullptr);
}

} // namespace pdfcore
