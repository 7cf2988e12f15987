// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/png_encoder.h"

#include <cmath>
#include <csetjmp>
#include <utility>

#include <png.h>

namespace pdfcore {

namespace {

/// Of zlib: beyond, pages become little smaller and take much longer.
constexpr int kCompressionLevel = 4;

/// Bytes that are handed over at once.
constexpr std::size_t kBufferBytes = std::size_t{1} << 16;

constexpr double kMetresPerInch = 0.0254;

int colourTypeOf(PixelKind kind)
{
    switch (kind) {
    case PixelKind::Gray:
        return PNG_COLOR_TYPE_GRAY;
    case PixelKind::GrayAlpha:
        return PNG_COLOR_TYPE_GRAY_ALPHA;
    case PixelKind::Rgb:
        return PNG_COLOR_TYPE_RGB;
    default:
        return PNG_COLOR_TYPE_RGB_ALPHA;
    }
}

class PngEncoder final : public PictureEncoder
{
public:
    PngEncoder(const PictureForm &form, PictureSink sink)
        : m_form(form)
        , m_sink(std::move(sink))
        , m_png(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, &fail, &ignore))
        , m_info(m_png != nullptr ? png_create_info_struct(m_png) : nullptr)
    {}

    ~PngEncoder() override { png_destroy_write_struct(&m_png, &m_info); }

    bool addRows(const unsigned char *rows, qsizetype bytesPerRow, int count) override
    {
        return run([&] {
            begin();
            for (int i = 0; i < count; ++i) {
                png_write_row(m_png, rows + i * bytesPerRow);
            }
        });
    }

    bool finish() override
    {
        return run([&] {
            begin();
            png_write_end(m_png, m_info);
        });
    }

    [[nodiscard]] QString reason() const override { return m_reason; }

private:
    /// Runs `body`, which is left by a jump on failure and holds nothing to be destroyed.
    template <typename Body>
    bool run(Body &&body)
    {
        if (m_info == nullptr) {
            m_reason = QStringLiteral("Not enough memory.");
            return false;
        }
        if (setjmp(png_jmpbuf(m_png)) != 0) {
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
        png_set_write_fn(m_png, this, &write, &flush);
        png_set_compression_buffer_size(m_png, kBufferBytes);
        png_set_compression_level(m_png, kCompressionLevel);
        png_set_filter(m_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
        png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(m_form.size.width()),
                     static_cast<png_uint_32>(m_form.size.height()), 8, colourTypeOf(m_form.pixels),
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        if (m_form.dpi > 0) {
            const auto perMetre =
                static_cast<png_uint_32>(std::lround(m_form.dpi / kMetresPerInch));
            png_set_pHYs(m_png, m_info, perMetre, perMetre, PNG_RESOLUTION_METER);
        }
        png_write_info(m_png, m_info);
    }

    static void write(png_structp png, png_bytep data, png_size_t size)
    {
        auto *self = static_cast<PngEncoder *>(png_get_io_ptr(png));
        if (!self->m_sink(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))) {
            png_error(png, "the file cannot be written");
        }
    }

    static void flush(png_structp /*png*/) {}

    [[noreturn]] static void fail(png_structp png, png_const_charp message)
    {
        static_cast<PngEncoder *>(png_get_error_ptr(png))->m_reason = QString::fromUtf8(message);
        png_longjmp(png, 1);
    }

    static void ignore(png_structp /*png*/, png_const_charp /*message*/) {}

    const PictureForm m_form;
    const PictureSink m_sink;
    png_structp m_png;
    png_infop m_info;
    QString m_reason;
    bool m_isBegun = false;
};

} // namespace

std::unique_ptr<PictureEncoder> newPngEncoder(const PictureForm &form, PictureSink sink)
{
    return std::make_unique<PngEncoder>(form, std::move(sink));
}

} // namespace pdfcore
