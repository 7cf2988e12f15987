// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/image_pixels.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/operations/jpeg_encoder.h"
#include "pdfcore/src/operations/lab_pixels.h"
#include "pdfcore/src/operations/packed_pixels.h"
#include "pdfcore/src/render/page_images.h"

#include <QImage>

#include <algorithm>
#include <new>

namespace pdfcore {

namespace {

/// What an image is decoded to, in memory of MuPDF.
struct DecodedImage
{
    fz_image *image = nullptr;
    fz_pixmap *pixels = nullptr; ///< In gray or RGB; of a stencil how opaque it is.
    fz_pixmap *mask = nullptr;   ///< One component; null: none.
    fz_buffer *file = nullptr;   ///< A JPEG file, perhaps.
};

void drop(fz_context *ctx, DecodedImage &decoded)
{
    fz_drop_pixmap(ctx, decoded.mask);
    fz_drop_pixmap(ctx, decoded.pixels);
    fz_drop_image(ctx, decoded.image);
    fz_drop_buffer(ctx, decoded.file);
    decoded = {};
}

bool isStencil(const DecodedImage &decoded)
{
    return colourSpaceOf(decoded.image) == nullptr;
}

QSize sizeOf(const fz_image *image)
{
    const fz_irect whole = wholeOf(image);
    return {whole.x1, whole.y1};
}

/// The power of two by which an image has to be made smaller.
int reductionOf(QSize size)
{
    int power = 0;
    const auto reduced = [&](int length) { return (qint64{length} >> power) + 1; };
    while (reduced(size.width()) * reduced(size.height()) > PdfPictureExport::kMostPixels ||
           std::max(reduced(size.width()), reduced(size.height())) >
               PdfPictureExport::kMostPixelsOfSide) {
        ++power;
    }
    return power;
}

/// All pixels of an image, or those of a smaller one when it has too many.
fz_pixmap *newPixels(fz_context *ctx, fz_image *image)
{
    // MuPDF goes by the size at which the image is drawn, and decodes some more than that.
    constexpr int kSpare = 2;
    const QSize size = sizeOf(image);
    const int power = reductionOf(size);
    if (power == 0) {
        return fz_get_pixmap_from_image(ctx, image, nullptr, nullptr, nullptr, nullptr);
    }
    const auto drawn = [power](int length) {
        return static_cast<float>(std::max((length >> power) - kSpare, 1));
    };
    fz_matrix place = fz_scale(drawn(size.width()), drawn(size.height()));
    fz_pixmap *found = fz_get_pixmap_from_image(ctx, image, nullptr, &place, nullptr, nullptr);
    if (reductionOf({fz_pixmap_width(ctx, found), fz_pixmap_height(ctx, found)}) > 0) {
        fz_drop_pixmap(ctx, found);
        fz_throw(ctx, FZ_ERROR_GENERIC, "the image is too large");
    }
    return found;
}

/// Replaces a pixmap by one in another space.
void convert(fz_context *ctx, fz_pixmap *&pixmap, fz_colorspace *space)
{
    fz_pixmap *converted =
        fz_convert_pixmap(ctx, pixmap, space, nullptr, nullptr, fz_default_color_params, 1);
    fz_drop_pixmap(ctx, pixmap);
    pixmap = converted;
}

/// Makes RGB of pixels in Lab.
void convertLab(fz_context *ctx, const LabRanges &ranges, fz_pixmap *&pixmap)
{
    const int width = fz_pixmap_width(ctx, pixmap);
    const int height = fz_pixmap_height(ctx, pixmap);
    fz_pixmap *rgb = fz_new_pixmap(ctx, fz_device_rgb(ctx), width, height, nullptr, 0);
    // Without gaps between the rows, unless there is opacity too.
    const bool isConverted =
        fz_pixmap_stride(ctx, pixmap) == fz_pixmap_stride(ctx, rgb) &&
        labToRgb(ranges, fz_pixmap_samples(ctx, pixmap), fz_pixmap_samples(ctx, rgb),
                 static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    if (!isConverted) {
        fz_drop_pixmap(ctx, rgb);
        convert(ctx, pixmap, fz_device_rgb(ctx));
        return;
    }
    fz_drop_pixmap(ctx, pixmap);
    pixmap = rgb;
}

/// Decodes the pixels as gray or RGB.
void decodePixels(fz_context *ctx, const DocumentSession::Reader &reader, PageImages &images,
                  pdf_obj *object, DecodedImage &decoded)
{
    const bool isLab = fz_colorspace_is_lab(ctx, colourSpaceOf(decoded.image)) != 0;
    if (isLab) {
        leaveUndecoded(decoded.image);
    }
    fz_colorspace *space = baseOf(baseOf(colourSpaceOf(decoded.image)));
    const ColourTransform *transform = reader.colourSpaces.transformOf(space);
    fz_image *shown = images.imageFor(ctx, decoded.image, transform);
    ImageWatch watch;
    beginWatch(ctx, watch, decoded.image);
    fz_try(ctx)
    {
        decoded.pixels = newPixels(ctx, shown);
    }
    fz_always(ctx)
    {
        endWatch(ctx, watch);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
    if (watch.isEmpty) {
        fz_throw(ctx, FZ_ERROR_GENERIC, "there is nothing to decode");
    }
    if (isLab) {
        convertLab(ctx, labRangesOf(ctx, object), decoded.pixels);
    }
    fz_colorspace *found = fz_pixmap_colorspace(ctx, decoded.pixels);
    if (found != nullptr && found != fz_device_gray(ctx) && found != fz_device_rgb(ctx)) {
        convert(ctx, decoded.pixels, fz_device_rgb(ctx));
    }
}

/// Decodes the mask to one component.
void decodeMask(fz_context *ctx, DecodedImage &decoded)
{
    fz_image *mask = maskOf(decoded.image);
    if (mask == nullptr) {
        return;
    }
    decoded.mask = newPixels(ctx, mask);
    if (fz_pixmap_components(ctx, decoded.mask) != 1) {
        convert(ctx, decoded.mask, fz_device_gray(ctx));
    }
}

/// Whether the stream of an image is a JPEG file, and nothing about the image is anywhere else.
bool isJpegAlone(fz_context *ctx, pdf_obj *object)
{
    pdf_obj *filter = pdf_dict_get(ctx, object, PDF_NAME(Filter));
    if (pdf_is_array(ctx, filter) != 0) {
        filter = pdf_array_len(ctx, filter) == 1 ? pdf_array_get(ctx, filter, 0) : nullptr;
    }
    pdf_obj *parameters = pdf_dict_get(ctx, object, PDF_NAME(DecodeParms));
    if (pdf_is_array(ctx, parameters) != 0) {
        parameters = pdf_array_get(ctx, parameters, 0);
    }
    return pdf_name_eq(ctx, filter, PDF_NAME(DCTDecode)) != 0 &&
           pdf_dict_get(ctx, parameters, PDF_NAME(ColorTransform)) == nullptr &&
           pdf_dict_get(ctx, object, PDF_NAME(Decode)) == nullptr &&
           pdf_dict_get(ctx, object, PDF_NAME(SMask)) == nullptr &&
           pdf_dict_get(ctx, object, PDF_NAME(Mask)) == nullptr;
}

/// Loads the bytes of the image where it can be a file by itself.
void loadFile(fz_context *ctx, pdf_obj *object, DecodedImage &decoded)
{
    fz_colorspace *space = colourSpaceOf(decoded.image);
    const bool isDevice = space == fz_device_gray(ctx) || space == fz_device_rgb(ctx);
    // Profiles that make a difference have spaces of their own.
    if (isDevice && isJpegAlone(ctx, object)) {
        decoded.file = pdf_load_raw_stream(ctx, object);
    }
}

/// The mask at the size of the pixels; null where there is none.
QImage fittedMask(fz_context *ctx, const DecodedImage &decoded, QSize size)
{
    if (decoded.mask == nullptr) {
        return {};
    }
    QImage mask(fz_pixmap_samples(ctx, decoded.mask), fz_pixmap_width(ctx, decoded.mask),
                fz_pixmap_height(ctx, decoded.mask), fz_pixmap_stride(ctx, decoded.mask),
                QImage::Format_Grayscale8);
    if (mask.size() == size) {
        return mask;
    }
    return mask.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

/// The pixels of what was decoded; on white where the format has no opacity.
void takePixels(fz_context *ctx, const DecodedImage &decoded, PdfPictureFormat format,
                EmbeddedImage *image)
{
    RawPixels raw;
    raw.width = fz_pixmap_width(ctx, decoded.pixels);
    raw.height = fz_pixmap_height(ctx, decoded.pixels);
    raw.samples = fz_pixmap_samples(ctx, decoded.pixels);
    raw.stride = fz_pixmap_stride(ctx, decoded.pixels);
    raw.colorants = isStencil(decoded) ? 0 : fz_pixmap_colorants(ctx, decoded.pixels);
    raw.hasAlpha = isStencil(decoded) || fz_pixmap_alpha(ctx, decoded.pixels) != 0;
    const QImage mask = fittedMask(ctx, decoded, {raw.width, raw.height});
    if (!mask.isNull()) {
        raw.mask = mask.constBits();
        raw.maskStride = mask.bytesPerLine();
    }
    const bool isOpaque = format == PdfPictureFormat::Jpeg;
    image->form.size = {raw.width, raw.height};
    image->form.pixels = kindOf(raw, isOpaque);
    image->pixels = packedPixels(raw, isOpaque);
}

bool takePixelsIfThereIsRoom(fz_context *ctx, const DecodedImage &decoded, PdfPictureFormat format,
                             EmbeddedImage *image)
{
    try {
        takePixels(ctx, decoded, format, image);
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

/// Takes the bytes of a JPEG file that is like the image; false when it is not.
bool takeFile(fz_context *ctx, const DecodedImage &decoded, EmbeddedImage *image)
{
    if (decoded.file == nullptr) {
        return false;
    }
    unsigned char *data = nullptr;
    const std::size_t size = fz_buffer_storage(ctx, decoded.file, &data);
    image->file = QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const std::optional<JpegHeader> header = readJpegHeader(image->file);
    fz_colorspace *space = colourSpaceOf(decoded.image);
    image->isFile = header && header->size == sizeOf(decoded.image) &&
                    header->components == fz_colorspace_n(ctx, space);
    return image->isFile;
}

} // namespace

bool extractImage(DocumentSession &session, const FoundImage &found, PdfPictureFormat format,
                  const PdfCancelFlag &cancel, EmbeddedImage *image)
{
    const DocumentSession::Reader reader = session.reader();
    MupdfContext &context = reader.context;
    fz_context *ctx = context.get();
    DecodedImage decoded;
    PageImages images(context);
    const auto work = [&](const WorkBudget &given, const auto &body) {
        WorkBudget budget = given;
        budget.cancelled = &cancel.value();
        context.beginWork(budget);
        const bool isDone = context.run(body, nullptr);
        if (context.endWork() != BudgetBreach::None) {
            session.doubt();
            return false;
        }
        return isDone;
    };
    const bool isLoaded = work(SessionBudgets().page, [&](fz_context *) {
        decoded.image = found.object != nullptr ? pdf_load_image(ctx, reader.document, found.object)
                                                : fz_keep_image(ctx, found.inlineImage);
        if (format == PdfPictureFormat::Jpeg && found.object != nullptr) {
            loadFile(ctx, found.object, decoded);
        }
    });
    bool isExtracted = isLoaded && takeFile(ctx, decoded, image);
    if (isLoaded && !isExtracted) {
        const QSize size = sizeOf(decoded.image);
        const bool isDecoded = work(DocumentSession::pageBudget({}, size, size), [&](fz_context *) {
            decodePixels(ctx, reader, images, found.object, decoded);
            decodeMask(ctx, decoded);
        });
        isExtracted = isDecoded && takePixelsIfThereIsRoom(ctx, decoded, format, image);
    }
    drop(ctx, decoded);
    return isExtracted;
}

} // namespace pdfcore
