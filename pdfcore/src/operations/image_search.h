// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/mupdf/mupdf_context.h"

#include <array>
#include <deque>
#include <set>
#include <unordered_set>
#include <vector>

#include <mupdf/pdf.h>

namespace pdfcore {

/// What a search for images has come across so far, by object number; good for any session of the
/// file.
struct SeenObjects
{
    std::unordered_set<int> images;
    std::unordered_set<int> masks;     ///< Images that are the mask of another.
    std::unordered_set<int> contents;  ///< Forms and patterns that were read.
    std::unordered_set<int> resources; ///< Resources in which all was looked at.
    std::set<std::vector<int>> pages;  ///< Contents of pages with their resources.
};

/// An image that was found: one or the other, for the finder to drop.
struct FoundImage
{
    pdf_obj *object = nullptr;
    fz_image *inlineImage = nullptr;
    bool isDamaged = false; ///< It is an inline image that cannot be read; there is neither.
};

/// Looks for the images on pages: in their contents, in forms, patterns and soft masks that these
/// use, and in annotations, in the order in which they are used; and in resources.
///
/// Everything is looked at once, without recursion. Belongs to the thread of the session, whose
/// document outlives it. The functions that take a MuPDF context throw its errors, after which the
/// search goes on behind what failed.
class ImageSearch final
{
public:
    ImageSearch(MupdfContext &context, pdf_document *document, SeenObjects &seen);
    ~ImageSearch();
    ImageSearch(const ImageSearch &) = delete;
    ImageSearch &operator=(const ImageSearch &) = delete;

    /// Goes to what a page shows; `page` is a reference.
    void enterPage(fz_context *ctx, pdf_obj *page);
    /// Goes to what is named by the resources of a page and of all that it uses.
    void enterResources(fz_context *ctx, pdf_obj *page);
    /// The next image; false when there is none.
    bool next(fz_context *ctx, FoundImage *found);

private:
    /// Streams that are read at the same time, one inside the other; what is nested deeper comes
    /// after them.
    static constexpr std::size_t kMostOpen = 24;
    /// Longest name that resources are looked up by.
    static constexpr std::size_t kNameBytes = 256;

    /// A stream and its resources, which are kept.
    struct Content
    {
        pdf_obj *stream; ///< Or the list of streams of a page.
        pdf_obj *resources;
    };
    struct OpenContent
    {
        fz_stream *stream;
        pdf_obj *resources;
    };

    void enterContent(fz_context *ctx, pdf_obj *stream, pdf_obj *fallbackResources);
    void enterAnnotations(fz_context *ctx, pdf_obj *page, pdf_obj *resources);
    bool isNewPage(fz_context *ctx, pdf_obj *page, pdf_obj *contents, pdf_obj *resources);
    void open(fz_context *ctx, pdf_obj *stream, pdf_obj *resources);
    void openWaiting(fz_context *ctx);
    void close(fz_context *ctx);
    bool read(fz_context *ctx, FoundImage *found);
    bool execute(fz_context *ctx, FoundImage *found);
    void readInlineImage(fz_context *ctx, FoundImage *found);
    [[nodiscard]] pdf_obj *named(fz_context *ctx, pdf_obj *category) const;
    bool takeImage(fz_context *ctx, pdf_obj *image, FoundImage *found);
    void noteMasks(fz_context *ctx, pdf_obj *image);
    void lookThrough(fz_context *ctx, pdf_obj *resources);
    void lookAtOwner(fz_context *ctx, pdf_obj *owner);
    void keepResources(fz_context *ctx, pdf_obj *resources);

    MupdfContext &m_context;
    pdf_document *m_document;
    SeenObjects &m_seen;
    pdf_lexbuf m_buffer{};
    std::array<char, kNameBytes> m_name{}; ///< The last operand that is a name; empty: none.
    std::vector<OpenContent> m_open;
    std::deque<Content> m_waiting;
    std::deque<pdf_obj *> m_images;    ///< Kept; those that resources name.
    std::deque<pdf_obj *> m_resources; ///< Kept; those to look through.
};

} // namespace pdfcore
