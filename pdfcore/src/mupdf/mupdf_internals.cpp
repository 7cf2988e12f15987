// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/mupdf_internals.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace pdfcore {

namespace {

std::size_t derivedImageSize(fz_context *ctx, fz_image *image)
{
    return sizeof(DerivedImage) +
           fz_image_size(ctx, reinterpret_cast<DerivedImage *>(image)->original);
}

void dropDerivedImage(fz_context *ctx, fz_image *image)
{
    auto *derived = reinterpret_cast<DerivedImage *>(image);
    fz_drop_pixmap(ctx, derived->kept);
    fz_drop_image(ctx, derived->original);
}

#if QUILLORA_MUPDF_SINCE(28)
/// Tells the image from its original, in whose place it is painted.
void derivedImageDigest(fz_context *ctx, fz_image *image, unsigned char digest[16])
{
    fz_image_digest(ctx, reinterpret_cast<DerivedImage *>(image)->original, digest);
    digest[0] = static_cast<unsigned char>(~digest[0]);
}
#endif

/// Only in memory: MuPDF compares page indexes with the count that the tree claims.
///
/// 1.28: refuses more pages than there are objects, though a tree may hold a page twice; room for
/// further objects makes them enough.
void setPageCount(fz_context *ctx, pdf_document *document, int count)
{
#if QUILLORA_MUPDF_SINCE(28)
    if (count >= pdf_xref_len(ctx, document)) {
        pdf_get_incremental_xref_entry(ctx, document, count);
    }
#endif
    pdf_obj *root = pdf_dict_getp(ctx, pdf_trailer(ctx, document), "Root/Pages");
    if (pdf_dict_get_int(ctx, root, PDF_NAME(Count)) != count) {
        pdf_dict_put_int(ctx, root, PDF_NAME(Count), count);
    }
}

#if QUILLORA_MUPDF_SINCE(25)

bool isBefore(const pdf_rev_page_map &a, const pdf_rev_page_map &b)
{
    return a.object != b.object ? a.object < b.object : a.page < b.page;
}

/// Puts references to the pages into the document's map. What is in there when a reference cannot
/// be made goes with the map.
void fillPageMap(fz_context *ctx, pdf_document *document, const std::vector<int> &pageNumbers)
{
    const std::size_t count = pageNumbers.size();
    document->map_page_count = static_cast<int>(count);
    document->rev_page_map = fz_malloc_array(ctx, count, pdf_rev_page_map);
    document->fwd_page_map =
        static_cast<pdf_obj **>(fz_calloc(ctx, count, sizeof *document->fwd_page_map));
    for (std::size_t i = 0; i < count; ++i) {
        document->fwd_page_map[i] = pdf_new_indirect(ctx, document, pageNumbers[i], 0);
        document->rev_page_map[i] = {static_cast<int>(i), pageNumbers[i]};
    }
    std::sort(document->rev_page_map, document->rev_page_map + count, &isBefore);
}

/// Whether the map has the page at `index` where it belongs.
bool isMapped(fz_context *ctx, const pdf_document *document, int index,
              const std::vector<int> &pageNumbers)
{
    return document->fwd_page_map != nullptr &&
           document->map_page_count == static_cast<int>(pageNumbers.size()) &&
           pdf_to_num(ctx, document->fwd_page_map[index]) ==
               pageNumbers[static_cast<std::size_t>(index)];
}

#else

/// Gives back the references too many that links took of the pages they look up.
void settlePageReferences(fz_context *ctx, pdf_document *document,
                          const std::vector<int> &pageNumbers)
{
    const int count = pdf_xref_len(ctx, document);
    for (const int number : pageNumbers) {
        if (number <= 0 || number >= count) {
            continue;
        }
        pdf_obj *object = pdf_get_xref_entry_no_null(ctx, document, number)->obj;
        while (object != nullptr && pdf_obj_refs(ctx, object) > 1) {
            pdf_drop_obj(ctx, object);
        }
    }
}

#endif

/// Lets form fields be shown by the appearances that the file holds for them.
///
/// 1.28: draws all fields anew where the form asks for it (/NeedAppearances), without what the form
/// states for all of its fields. A field without an appearance is drawn anew by all releases.
void showFieldsAsStored([[maybe_unused]] fz_context *ctx, [[maybe_unused]] pdf_document *document)
{
#if QUILLORA_MUPDF_SINCE(28)
    pdf_obj *form = pdf_dict_getp(ctx, pdf_trailer(ctx, document), "Root/AcroForm");
    if (pdf_dict_get(ctx, form, PDF_NAME(NeedAppearances)) != nullptr) {
        pdf_dict_del(ctx, form, PDF_NAME(NeedAppearances));
    }
#endif
}

void noteCutImage(void *user, const char *message)
{
    if (std::strcmp(message, "padding truncated image") == 0) {
        static_cast<ImageWatch *>(user)->isCut = true;
    }
}

/// Whether nothing at all can be decoded.
bool isEmpty(fz_context *ctx, fz_compressed_buffer *data)
{
    fz_stream *stream = nullptr;
    bool isEmpty = false;
    fz_var(stream);
    fz_var(isEmpty);
    fz_try(ctx)
    {
        stream = fz_open_image_decomp_stream_from_buffer(ctx, data, nullptr);
        isEmpty = fz_read_byte(ctx, stream) == EOF;
    }
    fz_always(ctx)
    {
        fz_drop_stream(ctx, stream);
    }
    fz_catch(ctx)
    {
        isEmpty = fz_caught(ctx) != kOutOfMemoryError;
    }
    return isEmpty;
}

/// A pixmap of the place of `pixels` that shows nothing.
fz_pixmap *newClearPixmap(fz_context *ctx, fz_pixmap *pixels)
{
    fz_pixmap *clear = fz_new_pixmap_with_bbox(ctx, fz_pixmap_colorspace(ctx, pixels),
                                               fz_pixmap_bbox(ctx, pixels), nullptr, 1);
    fz_clear_pixmap(ctx, clear);
    return clear;
}

/// A pixmap that shows nothing, of the size that was asked for.
fz_pixmap *newClearPixmap(fz_context *ctx, const fz_image *image, const fz_irect *area,
                          int *l2factor)
{
    const int shift = l2factor != nullptr ? std::exchange(*l2factor, 0) : 0;
    const int width = area != nullptr ? area->x1 - area->x0 : image->w;
    const int height = area != nullptr ? area->y1 - area->y0 : image->h;
    fz_colorspace *space = image->imagemask != 0 ? nullptr : fz_device_gray(ctx);
    fz_pixmap *clear = fz_new_pixmap(ctx, space, std::max(width >> shift, 1),
                                     std::max(height >> shift, 1), nullptr, 1);
    fz_clear_pixmap(ctx, clear);
    return clear;
}

fz_pixmap *watchedPixels(fz_context *ctx, fz_image *image, fz_irect *area, int width, int height,
                         int *l2factor)
{
    auto &watch = *static_cast<ImageWatch *>(fz_user_context(ctx));
    // A warning that repeats the one before it is held back.
    fz_flush_warnings(ctx);
    watch.isCut = false;
    // MuPDF recognises its images by the function.
    image->get_pixmap = watch.decode;
    fz_pixmap *pixels = nullptr;
    fz_pixmap *clear = nullptr;
    fz_var(pixels);
    fz_var(clear);
    fz_try(ctx)
    {
        pixels = image->get_pixmap(ctx, image, area, width, height, l2factor);
        if (watch.isCut && isEmpty(ctx, fz_compressed_image_buffer(ctx, image))) {
            clear = newClearPixmap(ctx, pixels);
            watch.isEmpty = true;
        }
    }
    fz_always(ctx)
    {
        image->get_pixmap = &watchedPixels;
    }
    fz_catch(ctx)
    {
        fz_drop_pixmap(ctx, pixels);
        const int reason = fz_caught(ctx);
        if (reason == kOutOfMemoryError || reason == FZ_ERROR_ABORT) {
            fz_rethrow(ctx);
        }
        watch.isEmpty = true;
        return newClearPixmap(ctx, image, area, l2factor);
    }
    if (clear == nullptr) {
        return pixels;
    }
    fz_drop_pixmap(ctx, pixels);
    return clear;
}

} // namespace

fz_stream *streamOf(pdf_document *document)
{
    return document->file;
}

pdf_lexbuf *tokenBufferOf(pdf_document *document)
{
    return &document->lexbuf.base;
}

ObjectPlace placeOf(fz_context *ctx, pdf_document *document, int number)
{
    if (number <= 0 || number >= pdf_xref_len(ctx, document)) {
        return {};
    }
    const pdf_xref_entry *entry = pdf_get_xref_entry_no_null(ctx, document, number);
    if (entry->obj != nullptr) {
        return {ObjectPlace::Kind::Loaded, entry->type == 'n' ? entry->ofs : 0, entry->obj};
    }
    switch (entry->type) {
    case 'n':
        return {ObjectPlace::Kind::InFile, entry->ofs, nullptr};
    case 'o':
        return {ObjectPlace::Kind::InStream, 0, nullptr};
    default:
        return {};
    }
}

ParsedObject parseAt(fz_context *ctx, pdf_document *document, int64_t offset)
{
    fz_stream *file = streamOf(document);
    fz_seek(ctx, file, offset, SEEK_SET);
    ParsedObject parsed;
    int generation = 0;
    int64_t streamOffset = 0;
    int needsRepair = 0;
    parsed.object = pdf_parse_ind_obj(ctx, document, file, &parsed.number, &generation,
                                      &streamOffset, &needsRepair);
    parsed.isSound = needsRepair == 0;
    return parsed;
}

void repairDocument(fz_context *ctx, pdf_document *document)
{
    pdf_repair_xref(ctx, document);
#if !QUILLORA_MUPDF_SINCE(28)
    pdf_repair_obj_stms(ctx, document);
#endif
}

int encryptionRevision(fz_context *ctx, pdf_document *document)
{
    return pdf_crypt_revision(ctx, document->crypt);
}

bool replaceFileKey(fz_context *ctx, pdf_document *document, const std::string &key)
{
    if (key.size() * 8 != static_cast<std::size_t>(pdf_crypt_length(ctx, document->crypt))) {
        return false;
    }
    std::memcpy(pdf_crypt_key(ctx, document->crypt), key.data(), key.size());
    return true;
}

void installPageMap(fz_context *ctx, pdf_document *document, const std::vector<int> &pageNumbers)
{
    if (pageNumbers.empty()) {
        return;
    }
    showFieldsAsStored(ctx, document);
#if QUILLORA_MUPDF_SINCE(25)
    // A change drops the map that there is, so the count comes first.
    setPageCount(ctx, document, static_cast<int>(pageNumbers.size()));
    pdf_drop_page_tree_internal(ctx, document);
    fz_try(ctx)
    {
        fillPageMap(ctx, document, pageNumbers);
    }
    fz_catch(ctx)
    {
        pdf_drop_page_tree_internal(ctx, document);
        fz_rethrow(ctx);
    }
#else
    int *map = fz_malloc_array(ctx, pageNumbers.size(), int);
    std::copy(pageNumbers.begin(), pageNumbers.end(), map);
    document->fwd_page_map = map;
    document->map_page_count = static_cast<int>(pageNumbers.size());
    document->page_map_nesting = 1;
    setPageCount(ctx, document, document->map_page_count);
#endif
}

pdf_page *loadPage(fz_context *ctx, pdf_document *document, int index,
                   [[maybe_unused]] pdf_obj *object,
                   [[maybe_unused]] const std::vector<int> &pageNumbers)
{
#if QUILLORA_MUPDF_SINCE(25)
    if (!isMapped(ctx, document, index, pageNumbers)) {
        installPageMap(ctx, document, pageNumbers);
    }
    return pdf_load_page(ctx, document, index);
#else
    const int before = pdf_obj_refs(ctx, object);
    pdf_page *page = nullptr;
    fz_var(page);
    fz_try(ctx)
    {
        page = pdf_load_page(ctx, document, index);
    }
    fz_always(ctx)
    {
        // A repair on the way puts a new object in the old one's place; the document and the page
        // are then the only ones to hold it.
        const bool isSame = page == nullptr || page->obj == object;
        pdf_obj *found = isSame ? object : page->obj;
        const int expected = isSame ? before + (page != nullptr ? 1 : 0) : 2;
        if (pdf_obj_refs(ctx, found) > expected) {
            pdf_drop_obj(ctx, found);
        }
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
    return page;
#endif
}

void dropPage(fz_context *ctx, pdf_page *page)
{
    if (page != nullptr) {
        fz_drop_page(ctx, &page->super);
    }
}

void releasePageMap([[maybe_unused]] fz_context *ctx, [[maybe_unused]] pdf_document *document,
                    [[maybe_unused]] const std::vector<int> &pageNumbers,
                    [[maybe_unused]] bool areOfFile)
{
#if !QUILLORA_MUPDF_SINCE(25)
    if (document->page_map_nesting == 0) {
        return;
    }
    if (areOfFile) {
        settlePageReferences(ctx, document, pageNumbers);
    }
    pdf_drop_page_tree(ctx, document);
#endif
}

fz_rect boundsOf(fz_context *ctx, pdf_page *page)
{
#if QUILLORA_MUPDF_SINCE(25)
    return pdf_bound_page(ctx, page, FZ_CROP_BOX);
#else
    return pdf_bound_page(ctx, page);
#endif
}

pdf_obj *storeKeyOf([[maybe_unused]] fz_context *ctx, pdf_obj *space)
{
#if QUILLORA_MUPDF_SINCE(28)
    pdf_obj *profile = pdf_array_get(ctx, space, 1);
    if ((pdf_is_indirect(ctx, space) == 0) && (pdf_is_indirect(ctx, profile) != 0)) {
        return profile;
    }
#endif
    return space;
}

fz_colorspace *baseOf(fz_colorspace *space)
{
    if (space == nullptr) {
        return nullptr;
    }
    if (space->type == FZ_COLORSPACE_INDEXED) {
        return space->u.indexed.base;
    }
    if (space->type == FZ_COLORSPACE_SEPARATION) {
        return space->u.separation.base;
    }
    return space;
}

void toBase(fz_context *ctx, fz_colorspace *space, const float *colour, float *base)
{
    if (space->type == FZ_COLORSPACE_SEPARATION) {
        space->u.separation.eval(ctx, space->u.separation.tint, colour, space->n, base,
                                 space->u.separation.base->n);
        return;
    }
    if (space->type == FZ_COLORSPACE_INDEXED) {
        const int n = space->u.indexed.base->n;
        const int entry = std::clamp(static_cast<int>(colour[0] * 255), 0, space->u.indexed.high);
        for (int i = 0; i < n; ++i) {
            base[i] = static_cast<float>(space->u.indexed.lookup[entry * n + i]) / 255.0F;
        }
        return;
    }
    std::memcpy(base, colour, sizeof(float) * static_cast<std::size_t>(space->n));
}

bool isCmyk(const fz_colorspace *space)
{
    return space->type == FZ_COLORSPACE_CMYK;
}

bool isLab(const fz_colorspace *space)
{
    return space->type == FZ_COLORSPACE_LAB;
}

fz_image *maskOf(const fz_image *image)
{
    return image->mask;
}

void leaveUndecoded(fz_image *image)
{
    image->use_decode = 0;
}

fz_image *loadInlineImage(fz_context *ctx, pdf_document *document, pdf_obj *resources,
                          pdf_obj *entries, fz_stream *content)
{
#if QUILLORA_MUPDF_SINCE(28)
    pdf_resource_stack stack{nullptr, resources};
    return pdf_load_inline_image(ctx, document, &stack, entries, content);
#else
    return pdf_load_inline_image(ctx, document, resources, entries, content);
#endif
}

fz_colorspace *colourSpaceOf(const fz_image *image)
{
    return image->imagemask != 0 ? nullptr : image->colorspace;
}

fz_colorspace *colourSpaceOf(const fz_shade *shade)
{
    return shade->colorspace;
}

const float *backgroundOf(const fz_shade *shade)
{
    return shade->use_background != 0 ? shade->background : nullptr;
}

bool hasOwnColours(const fz_font *font, int glyph)
{
    constexpr int kGlyphs = 256;
    if (font->t3flags == nullptr || glyph < 0 || glyph >= kGlyphs) {
        return false;
    }
    const unsigned kind = font->t3flags[glyph];
    return (kind & FZ_DEVFLAG_COLOR) != 0 && (kind & FZ_DEVFLAG_MASK) == 0;
}

void copyHints(fz_device *device, const fz_device *from)
{
    device->hints = from->hints;
    device->flags = from->flags;
}

DerivedImage *newDerivedImage(fz_context *ctx, fz_image *original, bool isRgb, std::size_t size,
                              ImagePixels *pixels)
{
    constexpr int kByteSamples = 8;
    fz_image *created =
        fz_new_image_of_size(ctx, original->w, original->h, isRgb ? kByteSamples : original->bpc,
                             isRgb ? fz_device_rgb(ctx) : original->colorspace, original->xres,
                             original->yres, original->interpolate, isRgb ? 0 : original->imagemask,
                             nullptr, nullptr, original->mask, size, pixels, &derivedImageSize,
#if QUILLORA_MUPDF_SINCE(28)
                             &derivedImageDigest,
#endif
                             &dropDerivedImage);
    auto *derived = reinterpret_cast<DerivedImage *>(created);
    derived->original = fz_keep_image(ctx, original);
    created->orientation = original->orientation;
    return derived;
}

fz_pixmap *originalPixels(fz_context *ctx, DerivedImage *image, fz_irect *area, int width,
                          int height, int *l2factor)
{
    return image->original->get_pixmap(ctx, image->original, area, width, height, l2factor);
}

bool isDecoded(const fz_image *image)
{
    return image->decoded != 0 || image->scalable != 0;
}

fz_irect wholeOf(const fz_image *image)
{
    return fz_make_irect(0, 0, image->w, image->h);
}

void moveDown(fz_pixmap *pixmap, int row)
{
    pixmap->y = row;
}

void beginWatch(fz_context *ctx, ImageWatch &watch, fz_image *image)
{
    if (fz_compressed_image_buffer(ctx, image) == nullptr) {
        return;
    }
    watch.image = image;
    watch.decode = image->get_pixmap;
    watch.warn = fz_warning_callback(ctx, &watch.warnUser);
    watch.contextUser = fz_user_context(ctx);
    image->get_pixmap = &watchedPixels;
    fz_set_warning_callback(ctx, &noteCutImage, &watch);
    fz_set_user_context(ctx, &watch);
}

void endWatch(fz_context *ctx, ImageWatch &watch)
{
    if (watch.image == nullptr) {
        return;
    }
    watch.image->get_pixmap = watch.decode;
    // What is held back belongs to the callback that goes.
    fz_flush_warnings(ctx);
    fz_set_warning_callback(ctx, watch.warn, watch.warnUser);
    fz_set_user_context(ctx, watch.contextUser);
    watch.image = nullptr;
}

} // namespace pdfcore
