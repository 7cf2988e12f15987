// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_jpeg.h"

#include "pdfcore/src/operations/exif_orientation.h"
#include "pdfcore/src/operations/picture_failure.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <jpeglib.h>

namespace pdfcore {

namespace {

/// Bytes before the first scan of which no more are read: a profile has 17 MB at most.
constexpr qint64 kMaxHeaderBytes = qint64{64} << 20;

constexpr std::size_t kChunkBytes = std::size_t{16} << 10;

/// The decoder with all that its callbacks need. It is found from their argument by being what
/// their structures are the beginning of.
struct Decoder
{
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_source_mgr source{};
    std::jmp_buf jump{};
    std::array<char, JMSG_LENGTH_MAX> reason{};
    std::array<JOCTET, kChunkBytes> chunk{};
    QFile *file = nullptr;
    JOCTET *profile = nullptr; ///< Allocated by the library.
    unsigned profileBytes = 0;

    Decoder() = default;
    ~Decoder()
    {
        jpeg_destroy_decompress(&info);
        std::free(profile);
    }
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;
};

Decoder &decoderOf(void *clientData)
{
    return *static_cast<Decoder *>(clientData);
}

void fail(j_common_ptr info)
{
    Decoder &decoder = decoderOf(info->client_data);
    info->err->format_message(info, decoder.reason.data());
    std::longjmp(decoder.jump, 1);
}

void discardMessage(j_common_ptr /*info*/) {}
void discardWarning(j_common_ptr /*info*/, int /*level*/) {}
void startSource(j_decompress_ptr /*info*/) {}
void endSource(j_decompress_ptr /*info*/) {}

boolean fillSource(j_decompress_ptr info)
{
    Decoder &decoder = decoderOf(info->client_data);
    qint64 got = 0;
    if (decoder.file->pos() < kMaxHeaderBytes) {
        got = decoder.file->read(reinterpret_cast<char *>(decoder.chunk.data()),
                                 static_cast<qint64>(decoder.chunk.size()));
    }
    if (got <= 0) {
        std::snprintf(decoder.reason.data(), decoder.reason.size(),
                      "The file ends before the picture begins.");
        std::longjmp(decoder.jump, 1);
    }
    decoder.source.next_input_byte = decoder.chunk.data();
    decoder.source.bytes_in_buffer = static_cast<std::size_t>(got);
    return TRUE;
}

void skipSource(j_decompress_ptr info, long count)
{
    jpeg_source_mgr &source = decoderOf(info->client_data).source;
    while (count > static_cast<long>(source.bytes_in_buffer)) {
        count -= static_cast<long>(source.bytes_in_buffer);
        fillSource(info);
    }
    if (count > 0) {
        source.next_input_byte += count;
        source.bytes_in_buffer -= static_cast<std::size_t>(count);
    }
}

void prepare(Decoder &decoder)
{
    decoder.info.err = jpeg_std_error(&decoder.errors);
    decoder.info.client_data = &decoder;
    decoder.errors.error_exit = &fail;
    decoder.errors.output_message = &discardMessage;
    decoder.errors.emit_message = &discardWarning;
    decoder.source.init_source = &startSource;
    decoder.source.fill_input_buffer = &fillSource;
    decoder.source.skip_input_data = &skipSource;
    decoder.source.resync_to_restart = &jpeg_resync_to_restart;
    decoder.source.term_source = &endSource;
}

/// Whether the first scan has the tables that a decoder starts with; those of Huffman codes may be
/// the usual ones.
bool hasTables(const jpeg_decompress_struct &info)
{
    for (int i = 0; i < info.comps_in_scan; ++i) {
        const int table = info.cur_comp_info[i]->quant_tbl_no;
        if (table < 0 || table >= NUM_QUANT_TBLS || info.quant_tbl_ptrs[table] == nullptr) {
            return false;
        }
    }
    return info.comps_in_scan > 0;
}

/// False where the header is damaged, with the reason in the decoder.
bool readHeader(Decoder &decoder)
{
    // Everything that lives across the jump is the caller's.
    if (setjmp(decoder.jump) != 0) {
        return false;
    }
    jpeg_create_decompress(&decoder.info);
    // The library has cleared it.
    decoder.info.src = &decoder.source;
    decoder.info.client_data = &decoder;
    jpeg_save_markers(&decoder.info, JPEG_APP0 + 1, 0xFFFF);
    jpeg_save_markers(&decoder.info, JPEG_APP0 + 2, 0xFFFF);
    jpeg_read_header(&decoder.info, TRUE);
    if (!hasTables(decoder.info)) {
        std::snprintf(decoder.reason.data(), decoder.reason.size(),
                      "The tables of the picture are missing.");
        return false;
    }
    jpeg_read_icc_profile(&decoder.info, &decoder.profile, &decoder.profileBytes);
    if (jpeg_has_multiple_scans(&decoder.info) == FALSE) {
        // With several scans this would read them all.
        decoder.info.out_color_space = decoder.info.jpeg_color_space;
        jpeg_start_decompress(&decoder.info);
    }
    return true;
}

/// Whether the picture is one of those that DCTDecode takes: baseline or progressive, with Huffman
/// codes and eight bits.
bool isForDocuments(const jpeg_decompress_struct &info)
{
    return info.data_precision == 8 && info.arith_code == FALSE &&
           (info.num_components == 1 || info.num_components == 3 || info.num_components == 4);
}

QImageIOHandler::Transformations orientationIn(const jpeg_decompress_struct &info)
{
    const QByteArray beginning("Exif\0\0", 6);
    for (const jpeg_marker_struct *marker = info.marker_list; marker != nullptr;
         marker = marker->next) {
        const QByteArray content(reinterpret_cast<const char *>(marker->data),
                                 static_cast<qsizetype>(marker->data_length));
        if (marker->marker == JPEG_APP0 + 1 && content.startsWith(beginning)) {
            return exifOrientation(content.mid(beginning.size()));
        }
    }
    return QImageIOHandler::TransformationNone;
}

} // namespace

ImportedPicture inspectJpeg(QFile &file)
{
    const auto decoder = std::make_unique<Decoder>();
    decoder->file = &file;
    prepare(*decoder);
    if (!readHeader(*decoder)) {
        throw invalidPicture(QString::fromLocal8Bit(decoder->reason.data()));
    }
    const jpeg_decompress_struct &info = decoder->info;
    if (!isForDocuments(info)) {
        throw invalidPicture(QStringLiteral("JPEG files of this kind are not supported."));
    }
    ImportedPicture picture;
    picture.coding = PictureCoding::Jpeg;
    picture.pixels = QSize(static_cast<int>(info.image_width), static_cast<int>(info.image_height));
    picture.components = info.num_components;
    // Programs that write Adobe's marker write ink as darkness, as the one did that had it first.
    picture.isInverted = info.num_components == 4 && info.saw_Adobe_marker != FALSE;
    picture.isUntransformed = info.num_components == 3 && info.jpeg_color_space == JCS_RGB &&
                              info.saw_Adobe_marker == FALSE;
    picture.profile = QByteArray(reinterpret_cast<const char *>(decoder->profile),
                                 static_cast<qsizetype>(decoder->profileBytes));
    picture.orientation = orientationIn(info);
    return picture;
}

} // namespace pdfcore
