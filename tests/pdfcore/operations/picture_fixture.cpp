// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/operations/picture_fixture.h"

#include <QtEndian>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>
#include <zlib.h>

namespace PictureFixture {

namespace {

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

/// The orientation as the only entry of EXIF data (EXIF 2.3, 4.5 and 4.6), in either byte order.
QByteArray exif(int orientation, bool isBigEndian)
{
    const auto value = static_cast<char>(orientation);
    if (isBigEndian) {
        return QByteArray("MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 19) + value +
               QByteArray(6, '\0');
    }
    return QByteArray("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 18) + value +
           QByteArray(7, '\0');
}

void setColours(jpeg_compress_struct &info, Jpeg::Colours colours)
{
    switch (colours) {
    case Jpeg::Colours::Gray:
        jpeg_set_colorspace(&info, JCS_GRAYSCALE);
        break;
    case Jpeg::Colours::YCbCr:
        jpeg_set_colorspace(&info, JCS_YCbCr);
        break;
    case Jpeg::Colours::Rgb:
    case Jpeg::Colours::AdobeRgb:
        jpeg_set_colorspace(&info, JCS_RGB);
        info.write_Adobe_marker = colours == Jpeg::Colours::AdobeRgb ? TRUE : FALSE;
        break;
    case Jpeg::Colours::AdobeYCbCr:
        jpeg_set_colorspace(&info, JCS_YCbCr);
        info.write_JFIF_header = FALSE;
        info.write_Adobe_marker = TRUE;
        info.comp_info[0].component_id = 'R';
        info.comp_info[1].component_id = 'G';
        info.comp_info[2].component_id = 'B';
        break;
    case Jpeg::Colours::Cmyk:
    case Jpeg::Colours::AdobeCmyk:
        jpeg_set_colorspace(&info, JCS_CMYK);
        info.write_Adobe_marker = colours == Jpeg::Colours::AdobeCmyk ? TRUE : FALSE;
        break;
    case Jpeg::Colours::AdobeYcck:
        jpeg_set_colorspace(&info, JCS_YCCK);
        break;
    }
}

int componentsOf(Jpeg::Colours colours)
{
    switch (colours) {
    case Jpeg::Colours::Gray:
        return 1;
    case Jpeg::Colours::Cmyk:
    case Jpeg::Colours::AdobeCmyk:
    case Jpeg::Colours::AdobeYcck:
        return 4;
    default:
        return 3;
    }
}

/// The pixels of one pass of Adam7 (ISO/IEC 15948, 8.2).
struct Pass
{
    int x, y, dx, dy;
};
constexpr std::array<Pass, 7> kPasses = {{{0, 0, 8, 8},
                                          {4, 0, 8, 8},
                                          {0, 4, 4, 8},
                                          {2, 0, 4, 4},
                                          {0, 2, 2, 4},
                                          {1, 0, 2, 2},
                                          {0, 1, 1, 2}}};

QByteArray filtered(QSize size, int bits, const Pixels &pixels)
{
    const QByteArray samples = samplesOf(size, bits, pixels);
    QByteArray rows;
    const qsizetype rowBytes = size.height() > 0 ? samples.size() / size.height() : 0;
    for (int y = 0; y < size.height(); ++y) {
        rows += '\0' + samples.mid(y * rowBytes, rowBytes);
    }
    return rows;
}

QByteArray interlaced(QSize size, int bits, const Pixels &pixels)
{
    QByteArray rows;
    for (const Pass &pass : kPasses) {
        const QSize part((size.width() - pass.x + pass.dx - 1) / pass.dx,
                         (size.height() - pass.y + pass.dy - 1) / pass.dy);
        if (part.width() > 0 && part.height() > 0) {
            rows += filtered(part, bits, [&](int x, int y) {
                return pixels(pass.x + x * pass.dx, pass.y + y * pass.dy);
            });
        }
    }
    return rows;
}

QByteArray deflated(const QByteArray &bytes)
{
    // Qt puts the length in front.
    return qCompress(bytes).mid(4);
}

QByteArray signatureAndHeader(const Png &form)
{
    QByteArray header = bigEndian(static_cast<quint32>(form.size.width())) +
                        bigEndian(static_cast<quint32>(form.size.height()));
    header += static_cast<char>(form.bits);
    header += static_cast<char>(form.colourType);
    header += QByteArray(2, '\0');
    header += form.isInterlaced ? '\1' : '\0';
    return QByteArray("\x89PNG\r\n\x1A\n", 8) + pngChunk("IHDR", header);
}

} // namespace

Pixels quartered(QSize size, const QList<Pixel> &colours)
{
    return [size, colours](int x, int y) {
        return colours.at((y < size.height() / 2 ? 0 : 2) + (x < size.width() / 2 ? 0 : 1));
    };
}

QByteArray jpeg(const Jpeg &form, const Pixels &pixels)
{
    const int components = componentsOf(form.colours);
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &bytes, &size);
    info.image_width = static_cast<JDIMENSION>(form.size.width());
    info.image_height = static_cast<JDIMENSION>(form.size.height());
    info.input_components = components;
    info.in_color_space = components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&info);
    setColours(info, form.colours);
    jpeg_set_quality(&info, 95, TRUE);
    if (form.isProgressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);
    if (form.orientation > 0) {
        const QByteArray marker = QByteArray("Exif\0\0", 6) + exif(form.orientation, true);
        jpeg_write_marker(&info, JPEG_APP0 + 1,
                          reinterpret_cast<const JOCTET *>(marker.constData()),
                          static_cast<unsigned>(marker.size()));
    }
    if (!form.profile.isEmpty()) {
        jpeg_write_icc_profile(&info, reinterpret_cast<const JOCTET *>(form.profile.constData()),
                               static_cast<unsigned>(form.profile.size()));
    }
    for (int y = 0; y < form.size.height(); ++y) {
        QByteArray row =
            samplesOf({form.size.width(), 1}, 8, [&](int x, int /*y*/) { return pixels(x, y); });
        auto *line = reinterpret_cast<JSAMPROW>(row.data());
        jpeg_write_scanlines(&info, &line, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const QByteArray file(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    std::free(bytes);
    return file;
}

QByteArray png(const Png &form, const Pixels &pixels)
{
    QByteArray file = signatureAndHeader(form);
    if (!form.profile.isEmpty()) {
        file += pngChunk("iCCP", QByteArray("own\0\0", 5) + deflated(form.profile));
    }
    if (form.orientation > 0) {
        file += pngChunk("eXIf", exif(form.orientation, false));
    }
    if (!form.palette.isEmpty()) {
        file += pngChunk("PLTE", form.palette);
    }
    if (!form.transparency.isEmpty()) {
        file += pngChunk("tRNS", form.transparency);
    }
    const QByteArray data = deflated(form.isInterlaced ? interlaced(form.size, form.bits, pixels)
                                                       : filtered(form.size, form.bits, pixels));
    const qsizetype part = data.size() / form.dataChunks;
    for (int i = 0; i < form.dataChunks; ++i) {
        const bool isLast = i + 1 == form.dataChunks;
        file += pngChunk("IDAT", data.mid(i * part, isLast ? -1 : part));
    }
    return file + pngChunk("IEND", {});
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &content)
{
    const QByteArray body = type + content;
    const auto sum = static_cast<quint32>(crc32(
        0, reinterpret_cast<const Bytef *>(body.constData()), static_cast<uInt>(body.size())));
    return bigEndian(static_cast<quint32>(content.size())) + body + bigEndian(sum);
}

QByteArray pngOf(const Png &form, const QByteArray &imageData)
{
    return signatureAndHeader(form) + pngChunk("IDAT", imageData) + pngChunk("IEND", {});
}

QByteArray imageDataOf(const QByteArray &png)
{
    QByteArray data;
    qsizetype place = 8;
    while (place + 12 <= png.size()) {
        const auto length = qFromBigEndian<quint32>(png.constData() + place);
        if (png.mid(place + 4, 4) == "IDAT") {
            data += png.mid(place + 8, length);
        }
        place += 12 + static_cast<qsizetype>(length);
    }
    return data;
}

QByteArray samplesOf(QSize size, int bits, const Pixels &pixels)
{
    QByteArray samples;
    for (int y = 0; y < size.height(); ++y) {
        int pending = 0;
        int pendingBits = 0;
        for (int x = 0; x < size.width(); ++x) {
            for (const int sample : pixels(x, y)) {
                if (bits == 16) {
                    samples += static_cast<char>(sample >> 8);
                    samples += static_cast<char>(sample & 0xFF);
                    continue;
                }
                pending = (pending << bits) | sample;
                pendingBits += bits;
                if (pendingBits == 8) {
                    samples += static_cast<char>(pending);
                    pending = 0;
                    pendingBits = 0;
                }
            }
        }
        if (pendingBits > 0) {
            samples += static_cast<char>(pending << (8 - pendingBits));
        }
    }
    return samples;
}

} // namespace PictureFixture
