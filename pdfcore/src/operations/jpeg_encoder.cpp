// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/jpeg_encoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <utility>

#include <jpeglib.h>

namespace pdfcore {

namespace {

constexpr int kQuality = 90;

/// Bytes that are handed over at once.
constexpr std::size_t kBufferBytes = std::size_t{1} << 16;

/// A resolution is two bytes in the file.
constexpr double kMostDpi = 65'535;

constexpr int kBitsPerComponent = 8;

/// Errors of libjpeg, which are left by a jump.
struct JpegErrors
{
    jpeg_error_mgr manager; // The first, since libjpeg hands its address over.
    jmp_buf jump;
    std::array<char, JMSG_LENGTH_MAX> message;

    JpegErrors()
        : manager{}
        , jump{}
        , message{}
    {
        jpeg_std_error(&manager);
        manager.error_exit = &fail;
        manager.output_message = [](j_common_ptr /*info*/) {};
    }

    [[noreturn]] static void fail(j_common_ptr info)
    {
        auto *errors = reinterpret_cast<JpegErrors *>(info->err);
        info->err->format_message(info, errors->message.data());
        std::longjmp(errors->jump, 1);
    }
};

class JpegEncoder final : public PictureEncoder
{
public:
    JpegEncoder(const PictureForm &form, PictureSink sink)
        : m_form(form)
        , m_sink(std::move(sink))
    {}

    ~JpegEncoder() override { jpeg_destroy_compress(&m_jpeg); }

    bool addRows(const unsigned char *rows, qsizetype bytesPerRow, int count) override
    {
        return run([&] {
            begin();
            for (int i = 0; i < count; ++i) {
                auto *row = const_cast<JSAMPROW>(rows + i * bytesPerRow);
                jpeg_write_scanlines(&m_jpeg, &row, 1);
            }
        });
    }

    bool finish() override
    {
        return run([&] {
            begin();
            jpeg_finish_compress(&m_jpeg);
        });
    }

    [[nodiscard]] QString reason() const override
    {
        return m_isUnwritten ? QStringLiteral("The file cannot be written.")
                             : QString::fromUtf8(m_errors.message.data());
    }

private:
    /// Where libjpeg leaves its bytes.
    struct Destination
    {
        jpeg_destination_mgr manager;
        JpegEncoder *owner;
    };

    /// Runs `body`, which is left by a jump on failure and holds nothing to be destroyed.
    template <typename Body>
    bool run(Body &&body)
    {
        if (setjmp(m_errors.jump) != 0) {
            return false;
        }
        body();
        return true;
    }

    void begin()
    {
        if (m_isBegun) {
            return;
        }
        m_isBegun = true;
        m_jpeg.err = &m_errors.manager;
        jpeg_create_compress(&m_jpeg);
        m_destination = {{}, this};
        m_destination.manager.init_destination = [](j_compress_ptr jpeg) { ownerOf(jpeg).reset(); };
        m_destination.manager.empty_output_buffer = [](j_compress_ptr jpeg) -> boolean {
            ownerOf(jpeg).hand(kBufferBytes);
            return TRUE;
        };
        m_destination.manager.term_destination = [](j_compress_ptr jpeg) {
            JpegEncoder &owner = ownerOf(jpeg);
            owner.hand(kBufferBytes - owner.m_destination.manager.free_in_buffer);
        };
        m_jpeg.dest = &m_destination.manager;
        m_jpeg.image_width = static_cast<JDIMENSION>(m_form.size.width());
        m_jpeg.image_height = static_cast<JDIMENSION>(m_form.size.height());
        m_jpeg.input_components = bytesOf(m_form.pixels);
        m_jpeg.in_color_space = m_form.pixels == PixelKind::Gray ? JCS_GRAYSCALE : JCS_RGB;
        jpeg_set_defaults(&m_jpeg);
        jpeg_set_quality(&m_jpeg, kQuality, TRUE);
        if (m_form.dpi > 0) {
            m_jpeg.density_unit = 1;
            m_jpeg.X_density =
                static_cast<UINT16>(std::lround(std::clamp(m_form.dpi, 1.0, kMostDpi)));
            m_jpeg.Y_density = m_jpeg.X_density;
        }
        jpeg_start_compress(&m_jpeg, TRUE);
    }

    static JpegEncoder &ownerOf(j_compress_ptr jpeg)
    {
        return *reinterpret_cast<Destination *>(jpeg->dest)->owner;
    }

    void reset()
    {
        m_destination.manager.next_output_byte = m_buffer.data();
        m_destination.manager.free_in_buffer = kBufferBytes;
    }

    void hand(std::size_t size)
    {
        if (!m_sink(reinterpret_cast<const char *>(m_buffer.data()),
                    static_cast<qsizetype>(size))) {
            m_isUnwritten = true;
            std::longjmp(m_errors.jump, 1);
        }
        reset();
    }

    const PictureForm m_form;
    const PictureSink m_sink;
    JpegErrors m_errors;
    jpeg_compress_struct m_jpeg{};
    Destination m_destination{};
    std::array<JOCTET, kBufferBytes> m_buffer{};
    bool m_isBegun = false;
    bool m_isUnwritten = false;
};

} // namespace

std::unique_ptr<PictureEncoder> newJpegEncoder(const PictureForm &form, PictureSink sink)
{
    return std::make_unique<JpegEncoder>(form, std::move(sink));
}

std::optional<JpegHeader> readJpegHeader(const QByteArray &file)
{
    JpegErrors errors;
    jpeg_decompress_struct jpeg{};
    jpeg.err = &errors.manager;
    if (setjmp(errors.jump) != 0) {
        jpeg_destroy_decompress(&jpeg);
        return std::nullopt;
    }
    jpeg_create_decompress(&jpeg);
    jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char *>(file.constData()),
                 static_cast<unsigned long>(file.size()));
    jpeg_read_header(&jpeg, TRUE);
    const QSize size(static_cast<int>(jpeg.image_width), static_cast<int>(jpeg.image_height));
    const int components = jpeg.num_components;
    const int precision = jpeg.data_precision;
    jpeg_destroy_decompress(&jpeg);
    if (precision != kBitsPerComponent) {
        return std::nullopt;
    }
    return JpegHeader{size, components};
}

} // namespace pdfcore
