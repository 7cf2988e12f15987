// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/image_search.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace pdfcore {

namespace {

/// Tokens between two looks at the clock.
constexpr int kTokensPerCheck = 1024;

/// Calls `grow`, which makes a container larger, and turns its failure into an error of MuPDF.
template <typename Grow>
void grown(fz_context *ctx, Grow &&grow)
{
    bool isGrown = true;
    try {
        grow();
    } catch (const std::exception &) {
        isGrown = false;
    }
    if (!isGrown) {
        fz_throw(ctx, kOutOfMemoryError, "out of memory");
    }
}

/// Whether an object is met for the first time; one without a number always is.
bool isNew(fz_context *ctx, std::unordered_set<int> &seen, pdf_obj *object)
{
    const int number = pdf_to_num(ctx, object);
    bool isInserted = true;
    grown(ctx, [&] { isInserted = number == 0 || seen.insert(number).second; });
    return isInserted;
}

bool isImage(fz_context *ctx, pdf_obj *object)
{
    return pdf_name_eq(ctx, pdf_dict_get(ctx, object, PDF_NAME(Subtype)), PDF_NAME(Image)) != 0;
}

bool isForm(fz_context *ctx, pdf_obj *object)
{
    return pdf_name_eq(ctx, pdf_dict_get(ctx, object, PDF_NAME(Subtype)), PDF_NAME(Form)) != 0;
}

pdf_obj *resourcesOf(fz_context *ctx, pdf_obj *owner)
{
    return pdf_dict_get(ctx, owner, PDF_NAME(Resources));
}

/// Skips what is left of an inline image and the operator behind it.
void skipInlineImage(fz_context *ctx, fz_stream *content)
{
    int before = ' ';
    int byte = fz_read_byte(ctx, content);
    while (byte != EOF) {
        if (before == 'E' && byte == 'I') {
            const int behind = fz_peek_byte(ctx, content);
            if (behind <= ' ' || behind == '<' || behind == '/') {
                return;
            }
        }
        before = byte;
        byte = fz_read_byte(ctx, content);
    }
}

/// Skips the one white space behind the operator that begins the data of an inline image.
void skipWhiteSpace(fz_context *ctx, fz_stream *content)
{
    if (fz_read_byte(ctx, content) == '\r' && fz_peek_byte(ctx, content) == '\n') {
        fz_read_byte(ctx, content);
    }
}

} // namespace

ImageSearch::ImageSearch(MupdfContext &context, pdf_document *document, SeenObjects &seen)
    : m_context(context)
    , m_document(document)
    , m_seen(seen)
{
    pdf_lexbuf_init(context.get(), &m_buffer, PDF_LEXBUF_SMALL);
}

ImageSearch::~ImageSearch()
{
    fz_context *ctx = m_context.get();
    while (!m_open.empty()) {
        close(ctx);
    }
    for (const Content &content : m_waiting) {
        pdf_drop_obj(ctx, content.stream);
        pdf_drop_obj(ctx, content.resources);
    }
    for (pdf_obj *image : m_images) {
        pdf_drop_obj(ctx, image);
    }
    for (pdf_obj *resources : m_resources) {
        pdf_drop_obj(ctx, resources);
    }
    pdf_lexbuf_fin(ctx, &m_buffer);
}

void ImageSearch::enterPage(fz_context *ctx, pdf_obj *page)
{
    pdf_obj *resources = pdf_dict_get_inheritable(ctx, page, PDF_NAME(Resources));
    pdf_obj *contents = pdf_dict_get(ctx, page, PDF_NAME(Contents));
    if (contents != nullptr && isNewPage(ctx, page, contents, resources)) {
        grown(ctx, [&] { m_waiting.push_back({contents, resources}); });
        pdf_keep_obj(ctx, contents);
        pdf_keep_obj(ctx, resources);
    }
    enterAnnotations(ctx, page, resources);
}

/// Whether the page has contents that no other one had with the same resources.
bool ImageSearch::isNewPage(fz_context *ctx, pdf_obj *page, pdf_obj *contents, pdf_obj *resources)
{
    bool isNewOne = true;
    const int owner =
        pdf_to_num(ctx, resources) != 0 ? pdf_to_num(ctx, resources) : -pdf_to_num(ctx, page);
    const int count = pdf_array_len(ctx, contents);
    // Without errors of MuPDF: a vector is held.
    grown(ctx, [&] {
        std::vector<int> key{owner, pdf_to_num(ctx, contents)};
        for (int i = 0; i < count && pdf_to_num(ctx, contents) == 0; ++i) {
            key.push_back(pdf_to_num(ctx, pdf_array_get(ctx, contents, i)));
        }
        isNewOne = m_seen.pages.insert(std::move(key)).second;
    });
    return isNewOne;
}

void ImageSearch::enterAnnotations(fz_context *ctx, pdf_obj *page, pdf_obj *resources)
{
    pdf_obj *annotations = pdf_dict_get(ctx, page, PDF_NAME(Annots));
    const int count = pdf_array_len(ctx, annotations);
    for (int i = 0; i < count; ++i) {
        pdf_obj *appearances = pdf_dict_get(ctx, pdf_array_get(ctx, annotations, i), PDF_NAME(AP));
        for (pdf_obj *kind : {PDF_NAME(N), PDF_NAME(R), PDF_NAME(D)}) {
            pdf_obj *appearance = pdf_dict_get(ctx, appearances, kind);
            if (pdf_is_stream(ctx, appearance) != 0) {
                enterContent(ctx, appearance, resources);
                continue;
            }
            const int states = pdf_dict_len(ctx, appearance);
            for (int state = 0; state < states; ++state) {
                enterContent(ctx, pdf_dict_get_val(ctx, appearance, state), resources);
            }
        }
    }
}

/// Has a form or a pattern read later on, if it has not been.
void ImageSearch::enterContent(fz_context *ctx, pdf_obj *stream, pdf_obj *fallbackResources)
{
    if (pdf_is_stream(ctx, stream) == 0 || !isNew(ctx, m_seen.contents, stream)) {
        return;
    }
    pdf_obj *own = resourcesOf(ctx, stream);
    pdf_obj *resources = own != nullptr ? own : fallbackResources;
    grown(ctx, [&] { m_waiting.push_back({stream, resources}); });
    pdf_keep_obj(ctx, stream);
    pdf_keep_obj(ctx, resources);
}

void ImageSearch::enterResources(fz_context *ctx, pdf_obj *page)
{
    keepResources(ctx, pdf_dict_get_inheritable(ctx, page, PDF_NAME(Resources)));
    pdf_obj *annotations = pdf_dict_get(ctx, page, PDF_NAME(Annots));
    const int count = pdf_array_len(ctx, annotations);
    for (int i = 0; i < count; ++i) {
        pdf_obj *appearances = pdf_dict_get(ctx, pdf_array_get(ctx, annotations, i), PDF_NAME(AP));
        for (int kind = 0; kind < pdf_dict_len(ctx, appearances); ++kind) {
            pdf_obj *appearance = pdf_dict_get_val(ctx, appearances, kind);
            lookAtOwner(ctx, appearance);
            for (int state = 0; state < pdf_dict_len(ctx, appearance); ++state) {
                if (pdf_is_stream(ctx, appearance) == 0) {
                    lookAtOwner(ctx, pdf_dict_get_val(ctx, appearance, state));
                }
            }
        }
    }
}

void ImageSearch::keepResources(fz_context *ctx, pdf_obj *resources)
{
    if (pdf_is_dict(ctx, resources) != 0 && isNew(ctx, m_seen.resources, resources)) {
        grown(ctx, [&] { m_resources.push_back(resources); });
        pdf_keep_obj(ctx, resources);
    }
}

/// A form, a pattern or a soft mask of resources: reads it unless something has used it.
void ImageSearch::lookAtOwner(fz_context *ctx, pdf_obj *owner)
{
    if (pdf_is_stream(ctx, owner) == 0) {
        return;
    }
    pdf_obj *resources = resourcesOf(ctx, owner);
    // One that has a number is in `resources` by that; any other by its owner's.
    if (resources != nullptr &&
        (pdf_to_num(ctx, resources) != 0 || isNew(ctx, m_seen.resources, owner))) {
        keepResources(ctx, resources);
    }
    enterContent(ctx, owner, nullptr);
}

void ImageSearch::lookThrough(fz_context *ctx, pdf_obj *resources)
{
    pdf_obj *objects = pdf_dict_get(ctx, resources, PDF_NAME(XObject));
    const int count = pdf_dict_len(ctx, objects);
    for (int i = 0; i < count; ++i) {
        pdf_obj *object = pdf_dict_get_val(ctx, objects, i);
        if (isImage(ctx, object)) {
            noteMasks(ctx, object);
            grown(ctx, [&] { m_images.push_back(object); });
            pdf_keep_obj(ctx, object);
        } else if (isForm(ctx, object)) {
            lookAtOwner(ctx, object);
        }
    }
    pdf_obj *patterns = pdf_dict_get(ctx, resources, PDF_NAME(Pattern));
    for (int i = 0; i < pdf_dict_len(ctx, patterns); ++i) {
        lookAtOwner(ctx, pdf_dict_get_val(ctx, patterns, i));
    }
    pdf_obj *states = pdf_dict_get(ctx, resources, PDF_NAME(ExtGState));
    for (int i = 0; i < pdf_dict_len(ctx, states); ++i) {
        lookAtOwner(ctx, pdf_dict_getp(ctx, pdf_dict_get_val(ctx, states, i), "SMask/G"));
    }
}

bool ImageSearch::next(fz_context *ctx, FoundImage *found)
{
    *found = {};
    while (true) {
        if (!m_open.empty()) {
            if (read(ctx, found)) {
                return true;
            }
            close(ctx);
        } else if (!m_waiting.empty()) {
            openWaiting(ctx);
        } else if (!m_resources.empty()) {
            pdf_obj *resources = m_resources.front();
            m_resources.pop_front();
            fz_try(ctx)
            {
                lookThrough(ctx, resources);
            }
            fz_always(ctx)
            {
                pdf_drop_obj(ctx, resources);
            }
            fz_catch(ctx)
            {
                fz_rethrow(ctx);
            }
        } else if (!m_images.empty()) {
            pdf_obj *image = m_images.front();
            m_images.pop_front();
            const bool isMask = m_seen.masks.contains(pdf_to_num(ctx, image));
            const bool isTaken = !isMask && takeImage(ctx, image, found);
            pdf_drop_obj(ctx, image);
            if (isTaken) {
                return true;
            }
        } else {
            return false;
        }
    }
}

void ImageSearch::openWaiting(fz_context *ctx)
{
    const Content content = m_waiting.front();
    m_waiting.pop_front();
    fz_try(ctx)
    {
        open(ctx, content.stream, content.resources);
    }
    fz_always(ctx)
    {
        pdf_drop_obj(ctx, content.stream);
        pdf_drop_obj(ctx, content.resources);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

void ImageSearch::open(fz_context *ctx, pdf_obj *stream, pdf_obj *resources)
{
    grown(ctx, [&] { m_open.reserve(kMostOpen); });
    fz_stream *opened = pdf_open_contents_stream(ctx, m_document, stream);
    m_open.push_back({opened, pdf_keep_obj(ctx, resources)});
    m_name.front() = '\0';
}

void ImageSearch::close(fz_context *ctx)
{
    fz_drop_stream(ctx, m_open.back().stream);
    pdf_drop_obj(ctx, m_open.back().resources);
    m_open.pop_back();
    m_name.front() = '\0';
}

/// Reads on in the innermost content until an image is found; false at its end.
bool ImageSearch::read(fz_context *ctx, FoundImage *found)
{
    bool isFound = false;
    bool isAtEnd = false;
    bool isBroken = false;
    fz_var(isFound);
    fz_var(isAtEnd);
    fz_var(isBroken);
    fz_try(ctx)
    {
        for (int tokens = 0; !isFound && !isAtEnd; ++tokens) {
            if (tokens % kTokensPerCheck == 0 && m_context.isOutOfTime()) {
                fz_throw(ctx, FZ_ERROR_GENERIC, "out of time");
            }
            const pdf_token token = pdf_lex(ctx, m_open.back().stream, &m_buffer);
            if (token == PDF_TOK_NAME) {
                fz_strlcpy(m_name.data(), m_buffer.scratch, m_name.size());
            } else if (token == PDF_TOK_KEYWORD) {
                isFound = execute(ctx, found);
                m_name.front() = '\0';
            }
            isAtEnd = token == PDF_TOK_EOF;
        }
    }
    fz_catch(ctx)
    {
        isBroken = true;
    }
    if (isBroken && (fz_caught(ctx) == kOutOfMemoryError || m_context.isOutOfTime())) {
        close(ctx);
        fz_throw(ctx, FZ_ERROR_GENERIC, "the content cannot be read");
    }
    return isFound;
}

/// Does what an operator asks for; whether it led to an image.
bool ImageSearch::execute(fz_context *ctx, FoundImage *found)
{
    const char *name = m_buffer.scratch;
    pdf_obj *content = nullptr;
    if (std::strcmp(name, "BI") == 0) {
        readInlineImage(ctx, found);
        return true;
    }
    if (m_name.front() == '\0') {
        return false;
    }
    if (std::strcmp(name, "Do") == 0) {
        pdf_obj *object = named(ctx, PDF_NAME(XObject));
        if (isImage(ctx, object)) {
            return takeImage(ctx, object, found);
        }
        content = isForm(ctx, object) ? object : nullptr;
    } else if (std::strcmp(name, "scn") == 0 || std::strcmp(name, "SCN") == 0) {
        content = named(ctx, PDF_NAME(Pattern));
    } else if (std::strcmp(name, "gs") == 0) {
        content = pdf_dict_getp(ctx, named(ctx, PDF_NAME(ExtGState)), "SMask/G");
    }
    if (content == nullptr || pdf_is_stream(ctx, content) == 0) {
        return false;
    }
    pdf_obj *fallback = m_open.back().resources;
    if (m_open.size() >= kMostOpen) {
        enterContent(ctx, content, fallback);
    } else if (isNew(ctx, m_seen.contents, content)) {
        pdf_obj *own = resourcesOf(ctx, content);
        open(ctx, content, own != nullptr ? own : fallback);
    }
    return false;
}

/// What the last name means in the resources.
pdf_obj *ImageSearch::named(fz_context *ctx, pdf_obj *category) const
{
    return pdf_dict_gets(ctx, pdf_dict_get(ctx, m_open.back().resources, category), m_name.data());
}

bool ImageSearch::takeImage(fz_context *ctx, pdf_obj *image, FoundImage *found)
{
    if (pdf_is_stream(ctx, image) == 0 || !isNew(ctx, m_seen.images, image)) {
        return false;
    }
    noteMasks(ctx, image);
    found->object = pdf_keep_obj(ctx, image);
    return true;
}

void ImageSearch::noteMasks(fz_context *ctx, pdf_obj *image)
{
    for (pdf_obj *kind : {PDF_NAME(SMask), PDF_NAME(Mask)}) {
        pdf_obj *mask = pdf_dict_get(ctx, image, kind);
        if (pdf_is_stream(ctx, mask) != 0) {
            grown(ctx, [&] { m_seen.masks.insert(pdf_to_num(ctx, mask)); });
        }
    }
}

void ImageSearch::readInlineImage(fz_context *ctx, FoundImage *found)
{
    fz_stream *content = m_open.back().stream;
    pdf_obj *entries = nullptr;
    fz_var(entries);
    fz_try(ctx)
    {
        entries = pdf_parse_dict(ctx, m_document, content, &m_buffer);
        skipWhiteSpace(ctx, content);
        found->inlineImage =
            loadInlineImage(ctx, m_document, m_open.back().resources, entries, content);
    }
    fz_always(ctx)
    {
        pdf_drop_obj(ctx, entries);
    }
    fz_catch(ctx)
    {
        if (fz_caught(ctx) == kOutOfMemoryError || m_context.isOutOfTime()) {
            fz_rethrow(ctx);
        }
        found->isDamaged = true;
    }
    skipInlineImage(ctx, content);
}

} // namespace pdfcore
