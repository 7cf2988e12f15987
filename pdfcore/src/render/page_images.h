// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

#include <mupdf/fitz.h>

namespace pdfcore {

class ColourTransform;
class MupdfContext;
struct PageImage;

/// What is painted in place of the images of a page: such that turn to RGB by a transform, and, of
/// a page that is painted in several parts, such that keep their decoded pixels for the next part.
///
/// The functions that take a MuPDF context are for its thread.
class PageImages final
{
public:
    /// @param mostBytes  Bytes of decoded pixels that may be kept; 0 for a page that is painted
    /// once.
    explicit PageImages(MupdfContext &context, std::size_t mostBytes = 0);
    ~PageImages();
    PageImages(const PageImages &) = delete;
    PageImages &operator=(const PageImages &) = delete;

    /// Whether the page is painted in several parts, so that its images come again.
    [[nodiscard]] bool comeAgain() const { return m_mostBytes > 0; }
    [[nodiscard]] std::size_t mostBytes() const { return m_mostBytes; }

    /// The image to paint for `image` when its colours need `transform`, which may be null:
    /// borrowed, itself where nothing has to be done about it. Throws MuPDF errors.
    fz_image *imageFor(fz_context *ctx, fz_image *image, const ColourTransform *transform);

    /// Lets go of all pixels that are kept when `more` bytes would make them too many.
    void makeRoom(fz_context *ctx, std::size_t more);

private:
    static constexpr std::size_t kEntries = 64;

    struct Entry
    {
        fz_image *original = nullptr;
        const ColourTransform *transform = nullptr;
        PageImage *derived = nullptr;
    };

    MupdfContext &m_context;
    std::size_t m_mostBytes;
    std::array<Entry, kEntries> m_entries;
    std::size_t m_next = 0; ///< The entry that goes first.
};

} // namespace pdfcore
