// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/jpeg_codec.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace pdfcore {

namespace {

/// Pixels beyond which a picture is neither made progressive nor read if it is, which takes all of
/// it in memory.
constexpr long long kMaxProgressivePixels = 60'000'000;
/// Pixels beyond which a picture is not read at all.
constexpr long long kMaxPixels = 2'000'000'000;
/// Bytes that a picture that is being made may take at first.
constexpr std::size_t kFirstOutput = std::size_t{1} << 16;
/// Passes over a picture beyond which it is not read: a few bytes can make one of a large picture.
constexpr int kMaxScans = 200;

struct ErrorHandler
{
    jpeg_error_mgr manager{}; ///< First, so that libjpeg's pointer to it is one to this.
    std::jmp_buf place{};
};

struct Progress
{
    jpeg_progress_mgr manager{}; ///< First, as above.
    const std::atomic<bool> *cancelled = nullptr;
};

/// Where a picture goes that is being made. That of libjpeg itself does not tell of its buffer when
/// an error ends the work.
struct Output
{
    jpeg_destination_mgr manager{}; ///< First, as above.
    unsigned char *bytes = nullptr;
    std::size_t capacity = 0;
    std::size_t size = 0; ///< Once it is complete.
};

long long pixelsOf(JDIMENSION width, JDIMENSION height)
{
    return static_cast<long long>(width) * static_cast<long long>(height);
}

extern "C" {
[[noreturn]] static void leave(j_common_ptr info)
{
    // NOLINTNEXTLINE(modernize-avoid-setjmp-longjmp): libjpeg has no other way out.
    std::longjmp(reinterpret_cast<ErrorHandler *>(info->err)->place, 1);
}

static void saveNothing(j_common_ptr /*info*/) {}

static void countWarning(j_common_ptr info, int level)
{
    if (level < 0) {
        ++info->err->num_warnings;
    }
}

static boolean growOutput(j_compress_ptr info)
{
    auto *output = reinterpret_cast<Output *>(info->dest);
    const std::size_t used = output->capacity;
    const std::size_t capacity = used > 0 ? used * 2 : kFirstOutput;
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): C++ objects must not be jumped over.
    auto *bytes = static_cast<unsigned char *>(std::realloc(output->bytes, capacity));
    if (bytes == nullptr) {
        leave(reinterpret_cast<j_common_ptr>(info));
    }
    output->bytes = bytes;
    output->capacity = capacity;
    output->manager.next_output_byte = bytes + used;
    output->manager.free_in_buffer = capacity - used;
    return TRUE;
}

static void beginOutput(j_compress_ptr info)
{
    growOutput(info);
}

static void endOutput(j_compress_ptr info)
{
    auto *output = reinterpret_cast<Output *>(info->dest);
    output->size = output->capacity - output->manager.free_in_buffer;
}

static void watch(j_common_ptr info)
{
    const auto *progress = reinterpret_cast<const Progress *>(info->progress);
    const bool hasManyScans =
        info->is_decompressor != FALSE &&
        reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > kMaxScans;
    if (hasManyScans || progress->cancelled->load(std::memory_order_relaxed)) {
        leave(info);
    }
}
}

jpeg_error_mgr *prepare(ErrorHandler &handler)
{
    jpeg_error_mgr *manager = jpeg_std_error(&handler.manager);
    manager->error_exit = &leave;
    manager->output_message = &saveNothing;
    manager->emit_message = &countWarning;
    return manager;
}

/// A picture that is being read. The methods that call libjpeg make no object with a destructor, as
/// errors jump out of the middle of them.
class Reader
{
public:
    explicit Reader(const PdfCancelFlag &cancel)
    {
        m_info.err = prepare(m_errors);
        m_progress.manager.progress_monitor = &watch;
        m_progress.cancelled = &cancel.value();
    }
    ~Reader() { jpeg_destroy_decompress(&m_info); }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;

    bool open(const QByteArray &jpeg)
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        jpeg_create_decompress(&m_info);
        m_info.progress = &m_progress.manager;
        jpeg_mem_src(&m_info, reinterpret_cast<const unsigned char *>(jpeg.constData()),
                     static_cast<unsigned long>(jpeg.size()));
        if (jpeg_read_header(&m_info, TRUE) != JPEG_HEADER_OK || !isSound()) {
            return false;
        }
        const long long pixels = pixelsOf(m_info.image_width, m_info.image_height);
        return pixels <= (m_info.progressive_mode != FALSE ? kMaxProgressivePixels : kMaxPixels);
    }

    bool start(int denominator)
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        m_info.scale_num = 1;
        m_info.scale_denom = static_cast<unsigned>(denominator);
        if (m_info.jpeg_color_space == JCS_YCCK) {
            m_info.out_color_space = JCS_CMYK;
        } else if (m_info.jpeg_color_space == JCS_YCbCr) {
            m_info.out_color_space = JCS_RGB;
        } else {
            m_info.out_color_space = m_info.jpeg_color_space;
        }
        return jpeg_start_decompress(&m_info) != FALSE;
    }

    bool readRow(std::uint8_t *row)
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        return jpeg_read_scanlines(&m_info, &row, 1) == 1 && isSound();
    }

    bool finish()
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        return jpeg_finish_decompress(&m_info) != FALSE && isSound();
    }

    jvirt_barray_ptr *coefficients()
    {
        if (setjmp(m_errors.place) != 0) {
            return nullptr;
        }
        if (pixelsOf(m_info.image_width, m_info.image_height) > kMaxProgressivePixels) {
            return nullptr;
        }
        jvirt_barray_ptr *found = jpeg_read_coefficients(&m_info);
        return isSound() ? found : nullptr;
    }

    [[nodiscard]] const jpeg_decompress_struct &info() const { return m_info; }
    jpeg_decompress_struct &info() { return m_info; }

private:
    [[nodiscard]] bool isSound() const { return m_errors.manager.num_warnings == 0; }

    ErrorHandler m_errors;
    Progress m_progress;
    jpeg_decompress_struct m_info{};
};

/// A picture that is being made; see Reader.
class Writer
{
public:
    explicit Writer(const PdfCancelFlag &cancel)
    {
        m_info.err = prepare(m_errors);
        m_progress.manager.progress_monitor = &watch;
        m_progress.cancelled = &cancel.value();
    }
    ~Writer()
    {
        jpeg_destroy_compress(&m_info);
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): see growOutput().
        std::free(m_output.bytes);
    }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;

    bool encode(const Raster &raster, const JpegSettings &settings)
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        begin();
        m_info.image_width = static_cast<JDIMENSION>(raster.width);
        m_info.image_height = static_cast<JDIMENSION>(raster.height);
        m_info.input_components = raster.components;
        m_info.in_color_space = spaceOf(raster.components);
        jpeg_set_defaults(&m_info);
        if (raster.components == 3) {
            jpeg_set_colorspace(&m_info, settings.isTransformed ? JCS_YCbCr : JCS_RGB);
        } else if (raster.components == 4) {
            jpeg_set_colorspace(&m_info, settings.isTransformed ? JCS_YCCK : JCS_CMYK);
        }
        jpeg_set_quality(&m_info, settings.quality, TRUE);
        const int factor = settings.isSubsampled && settings.isTransformed ? 2 : 1;
        for (int i = 0; i < m_info.num_components; ++i) {
            // Of YCCK the black part, the last one, is as fine as the brightness.
            const bool isFine = raster.components == 1 || i == 0 || i == 3;
            m_info.comp_info[i].h_samp_factor = isFine && raster.components > 1 ? factor : 1;
            m_info.comp_info[i].v_samp_factor = m_info.comp_info[i].h_samp_factor;
        }
        m_info.optimize_coding = TRUE;
        makeProgressive();
        jpeg_start_compress(&m_info, TRUE);
        while (m_info.next_scanline < m_info.image_height) {
            // libjpeg does not write to what it encodes.
            auto *row =
                const_cast<std::uint8_t *>(raster.row(static_cast<int>(m_info.next_scanline)));
            jpeg_write_scanlines(&m_info, &row, 1);
        }
        jpeg_finish_compress(&m_info);
        return true;
    }

    bool repack(Reader &reader, jvirt_barray_ptr *coefficients)
    {
        if (setjmp(m_errors.place) != 0) {
            return false;
        }
        begin();
        jpeg_copy_critical_parameters(&reader.info(), &m_info);
        m_info.optimize_coding = TRUE;
        makeProgressive();
        jpeg_write_coefficients(&m_info, coefficients);
        jpeg_finish_compress(&m_info);
        return true;
    }

    [[nodiscard]] QByteArray result() const
    {
        return QByteArray(reinterpret_cast<const char *>(m_output.bytes),
                          static_cast<qsizetype>(m_output.size));
    }

private:
    void begin()
    {
        jpeg_create_compress(&m_info);
        m_info.progress = &m_progress.manager;
        m_output.manager.init_destination = &beginOutput;
        m_output.manager.empty_output_buffer = &growOutput;
        m_output.manager.term_destination = &endOutput;
        m_info.dest = &m_output.manager;
    }

    void makeProgressive()
    {
        if (pixelsOf(m_info.image_width, m_info.image_height) <= kMaxProgressivePixels) {
            jpeg_simple_progression(&m_info);
        }
    }

    static J_COLOR_SPACE spaceOf(int components)
    {
        return components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
    }

    ErrorHandler m_errors;
    Progress m_progress;
    jpeg_compress_struct m_info{};
    Output m_output;
};

/// The quality that libjpeg would have made a table of brightness of, by its sum:
/// jpeg_set_quality() scales the sample table of ITU-T T.81, annex K.1, whose sum is 3688.
int qualityOf(const JQUANT_TBL &table)
{
    long long sum = 0;
    for (const UINT16 value : table.quantval) {
        sum += value;
    }
    const double scale = 100.0 * static_cast<double>(sum) / 3688.0;
    const double quality = scale <= 100.0 ? (200.0 - scale) / 2.0 : 5000.0 / scale;
    return std::clamp(static_cast<int>(std::lround(quality)), 1, 100);
}

JpegFacts factsOf(const jpeg_decompress_struct &info)
{
    JpegFacts facts;
    facts.width = static_cast<int>(info.image_width);
    facts.height = static_cast<int>(info.image_height);
    facts.components = info.num_components;
    facts.isTransformed = info.jpeg_color_space == JCS_YCbCr || info.jpeg_color_space == JCS_YCCK;
    facts.saysTransform = info.saw_Adobe_marker != FALSE || info.saw_JFIF_marker != FALSE;
    const jpeg_component_info &first = info.comp_info[0];
    for (int i = 1; i < info.num_components; ++i) {
        const jpeg_component_info &other = info.comp_info[i];
        facts.isSubsampled = facts.isSubsampled || other.h_samp_factor < first.h_samp_factor ||
                             other.v_samp_factor < first.v_samp_factor;
    }
    const JQUANT_TBL *table = info.quant_tbl_ptrs[first.quant_tbl_no];
    facts.quality = table != nullptr ? qualityOf(*table) : 1;
    return facts;
}

} // namespace

std::optional<JpegFacts> jpegFacts(const QByteArray &jpeg)
{
    const PdfCancelFlag never;
    Reader reader(never);
    if (!reader.open(jpeg) || reader.info().data_precision != 8) {
        return std::nullopt;
    }
    const J_COLOR_SPACE space = reader.info().jpeg_color_space;
    const int components = reader.info().num_components;
    const bool isKnown = (components == 1 && space == JCS_GRAYSCALE) ||
                         (components == 3 && (space == JCS_YCbCr || space == JCS_RGB)) ||
                         (components == 4 && (space == JCS_CMYK || space == JCS_YCCK));
    return isKnown ? std::optional(factsOf(reader.info())) : std::nullopt;
}

bool readJpeg(const QByteArray &jpeg, int denominator, const PdfCancelFlag &cancel,
              const RowSink &sink)
{
    Reader reader(cancel);
    if (!reader.open(jpeg) || !reader.start(denominator)) {
        return false;
    }
    std::vector<std::uint8_t> row(static_cast<std::size_t>(reader.info().output_width) *
                                  static_cast<std::size_t>(reader.info().output_components));
    while (reader.info().output_scanline < reader.info().output_height) {
        if (!reader.readRow(row.data()) || !sink(row.data())) {
            return false;
        }
    }
    return reader.finish();
}

QByteArray newJpeg(const Raster &raster, const JpegSettings &settings, const PdfCancelFlag &cancel)
{
    Writer writer(cancel);
    return writer.encode(raster, settings) ? writer.result() : QByteArray();
}

QByteArray repackedJpeg(const QByteArray &jpeg, const PdfCancelFlag &cancel)
{
    Reader reader(cancel);
    if (!reader.open(jpeg)) {
        return {};
    }
    jvirt_barray_ptr *coefficients = reader.coefficients();
    Writer writer(cancel);
    if (coefficients == nullptr || !writer.repack(reader, coefficients) || !reader.finish()) {
        return {};
    }
    return writer.result();
}

} // namespace pdfcore
