// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

namespace pdfcore {

// What the engine takes from inside MuPDF, and what differs from one release to the next.
//
// MuPDF keeps the fields of its structures in its headers without promising anything about them.
// Whatever the engine reads or writes there stands here, and nowhere else, so that a new release is
// tried by going through this file. Each entry says for which releases it is and what it is good
// for; an entry whose reason is gone can go. cmake/QuilloraReleases.cmake lists those that were
// tried. All functions may throw MuPDF errors unless they say otherwise, and all are for the thread
// that `ctx` belongs to.

/// Whether a release of MuPDF is at least 1.`minor`.
#define QUILLORA_MUPDF_SINCE(minor) (FZ_VERSION_MAJOR > 1 || FZ_VERSION_MINOR >= (minor))

// --- Errors -----------------------------------------------------------------------------------

/// The code of errors that mean that memory ran out.
///
/// All releases: 1.21 has a code for just that, later ones one for memory and system calls, which
/// the engine does through Qt.
#if QUILLORA_MUPDF_SINCE(25)
inline constexpr int kOutOfMemoryError = FZ_ERROR_SYSTEM;
#else
inline constexpr int kOutOfMemoryError = FZ_ERROR_MEMORY;
#endif

// --- The file and its objects -----------------------------------------------------------------

/// The stream that a document is read from. All releases: objects are read without being kept,
/// which the interface does not offer. Does not throw.
[[nodiscard]] fz_stream *streamOf(pdf_document *document);

/// The buffer for the tokens of the document's file, whose fields hold what was read last. All
/// releases; see streamOf(). Does not throw.
[[nodiscard]] pdf_lexbuf *tokenBufferOf(pdf_document *document);

/// What is known of an object before it is read.
struct ObjectPlace
{
    enum class Kind {
        Nowhere,  ///< There is no such object.
        Loaded,   ///< It is in memory; read from `offset` of the file unless that is 0.
        InFile,   ///< At `offset` of the file.
        InStream, ///< In an object stream.
    };
    Kind kind = Kind::Nowhere;
    int64_t offset = 0;
    pdf_obj *object = nullptr; ///< Borrowed; of one that is loaded.
};

/// Where an object is. All releases; see streamOf().
[[nodiscard]] ObjectPlace placeOf(fz_context *ctx, pdf_document *document, int number);

/// What stands at a place of a file.
struct ParsedObject
{
    pdf_obj *object = nullptr; ///< For the caller to drop.
    int number = 0;
    bool isSound = false; ///< Nothing about it calls for a repair of the file.
};

/// Reads the object at `offset` of the file without keeping it in the document's memory and without
/// decrypting anything. All releases; see streamOf().
[[nodiscard]] ParsedObject parseAt(fz_context *ctx, pdf_document *document, int64_t offset);

/// Looks for the objects of a document in the whole file, as for one whose cross-reference table is
/// of no use. All releases: MuPDF does so by itself only when the table itself is damaged. Before
/// 1.28 object streams take a call of their own.
void repairDocument(fz_context *ctx, pdf_document *document);

/// The revision of the handler that a document is encrypted by. All releases: see replaceFileKey().
[[nodiscard]] int encryptionRevision(fz_context *ctx, pdf_document *document);

/// Gives an encrypted document the key that its objects are decrypted with; false when the key is
/// not as long as it has to be. All releases: the interface takes passwords only, and up to
/// revision 4 only such as PDFDocEncoding can express.
bool replaceFileKey(fz_context *ctx, pdf_document *document, const std::string &key);

// --- Pages ------------------------------------------------------------------------------------

/// Gives MuPDF the pages found by the engine's own walk over the page tree, so that it counts the
/// same pages in the same order, and looks them up at once instead of walking the tree again.
///
/// 1.21: the interface walks the tree from its start for every page. Since 1.25 MuPDF makes such a
/// list by itself, at once, but of a damaged tree it lists other pages than those that are shown,
/// and it makes it anew after every change of an object.
///
/// 1.28: also lets form fields be shown by the appearances that the file holds for them.
void installPageMap(fz_context *ctx, pdf_document *document, const std::vector<int> &pageNumbers);

/// Loads the page at `index`, whose object is `object`; the pages have been installed.
///
/// 1.21 takes a reference too many to an object that it found through the page map, which would
/// keep it for good; later releases drop the map when an object changes.
pdf_page *loadPage(fz_context *ctx, pdf_document *document, int index, pdf_obj *object,
                   const std::vector<int> &pageNumbers);

/// Gives back a loaded page; null is fine. Does not throw.
void dropPage(fz_context *ctx, pdf_page *page);

/// Lets go of the page map and of what hangs on it, before the document is dropped.
///
/// 1.21 takes a reference too many each time that a link looks its page up. Once no page is loaded,
/// only the document holds page objects, provided that they are objects of the file
/// (`areOfFile`): a page that was made an object in memory is held by its parent as well. Later
/// releases need nothing of this.
void releasePageMap(fz_context *ctx, pdf_document *document, const std::vector<int> &pageNumbers,
                    bool areOfFile);

/// What a reader sees of a page, in points. Since 1.25 the box has to be named.
[[nodiscard]] fz_rect boundsOf(fz_context *ctx, pdf_page *page);

// --- Colours ----------------------------------------------------------------------------------

/// What the interpreter finds an ICC-based colour space by in the store: `space` itself or, since
/// 1.28, the stream of its profile where the space is no object of its own. All releases: the
/// interface does not say. Borrowed from `space`.
[[nodiscard]] pdf_obj *storeKeyOf(fz_context *ctx, pdf_obj *space);

/// The space in which the colours of an indexed or separation space are defined, else itself; null
/// for null. 1.21 has no function for it. Does not throw.
[[nodiscard]] fz_colorspace *baseOf(fz_colorspace *space);

/// Values of `space` as values of its base space. All releases: the interface converts to device
/// spaces only, by MuPDF's own formulas.
void toBase(fz_context *ctx, fz_colorspace *space, const float *colour, float *base);

/// The kind of a space, of its own or of its profile. All releases: the interface gives it away as
/// a number only. Does not throw.
[[nodiscard]] bool isCmyk(const fz_colorspace *space);
[[nodiscard]] bool isLab(const fz_colorspace *space);

/// The mask of an image; null where it has none. Borrowed. All releases: there is no function for
/// it. Does not throw.
[[nodiscard]] fz_image *maskOf(const fz_image *image);

/// Leaves the values of an image as its data has them, which is to be said before it is decoded.
/// All releases: without a colour engine MuPDF makes them bytes from 0 to 1 after scaling them to
/// what they mean, which leaves nothing of the values of Lab. Does not throw.
void leaveUndecoded(fz_image *image);

/// An image that follows the entries `entries` in a content stream, of which it is read. Since 1.28
/// resources come as a stack.
fz_image *loadInlineImage(fz_context *ctx, pdf_document *document, pdf_obj *resources,
                          pdf_obj *entries, fz_stream *content);

/// The space of an image's pixels; null for a mask. All releases: there is no function for it. Does
/// not throw.
[[nodiscard]] fz_colorspace *colourSpaceOf(const fz_image *image);

/// The space of a shading's colours, and the colour behind it in that space; null where it has
/// none. All releases: there is no function for them. Do not throw.
[[nodiscard]] fz_colorspace *colourSpaceOf(const fz_shade *shade);
[[nodiscard]] const float *backgroundOf(const fz_shade *shade);

/// Whether a letter is one that its font (of Type 3) draws in colours of its own, so that the
/// colour of the text does not matter to it. All releases: there is no function for it. Does not
/// throw.
[[nodiscard]] bool hasOwnColours(const fz_font *font, int glyph);

/// Lets a device do without the same things as another one. All releases: there is no function that
/// tells what a device does without. Does not throw.
void copyHints(fz_device *device, const fz_device *from);

/// Makes an image of `Image` that has the size, the mask and the place of `original` but pixels of
/// its own, in RGB (`isRgb`) or in the form that the original has. All releases: the interface
/// makes images from pixels only, which would decode them all at once. `Image` begins with a
/// DerivedImage, which owns its original and the pixels it keeps. Since 1.28 an image has a digest
/// too.
struct DerivedImage
{
    fz_image super;
    fz_image *original;
    fz_pixmap *kept; ///< Null: none.
};
using ImagePixels = fz_pixmap *(fz_context *, fz_image *, fz_irect *, int, int, int *);
DerivedImage *newDerivedImage(fz_context *ctx, fz_image *original, bool isRgb, std::size_t size,
                              ImagePixels *pixels);

/// The pixels of the original of an image, as MuPDF would get them for the image itself.
fz_pixmap *originalPixels(fz_context *ctx, DerivedImage *image, fz_irect *area, int width,
                          int height, int *l2factor);

/// Whether an image is held as pixels, or as what can be drawn in any size, so that nothing is
/// gained by keeping it. All releases: there is no function for it. Does not throw.
[[nodiscard]] bool isDecoded(const fz_image *image);

/// All pixels of an image. All releases: there is no function for its size. Does not throw.
[[nodiscard]] fz_irect wholeOf(const fz_image *image);

/// Lets a pixmap of one's own memory begin in row `row` of what is painted. All releases: such a
/// pixmap begins in the first one, and moving what is painted instead would round it differently.
/// Does not throw.
void moveDown(fz_pixmap *pixmap, int row);

/// Lets an image show nothing when there is not one pixel in its data, for as long as it is
/// watched. All releases: MuPDF takes what is missing for zeros, as in black, and tells by a
/// warning only; and where decoding fails, it paints nothing more on the page. For one image of a
/// context at a time. Nothing happens to an image that is not made from packed data. Does not
/// throw.
struct ImageWatch
{
    fz_image *image = nullptr; ///< Borrowed; null when nothing is watched.
    fz_image_get_pixmap_fn *decode = nullptr;
    fz_warning_cb *warn = nullptr;
    void *warnUser = nullptr;
    void *contextUser = nullptr;
    bool isCut = false;
    bool isEmpty = false; ///< It was asked for its pixels, and there were none.
};
void beginWatch(fz_context *ctx, ImageWatch &watch, fz_image *image);
void endWatch(fz_context *ctx, ImageWatch &watch);

} // namespace pdfcore
