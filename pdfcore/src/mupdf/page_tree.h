// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/mupdf/mupdf_context.h"

#include <QList>
#include <QSizeF>

#include <memory>
#include <vector>

#include <mupdf/pdf.h>

class QTemporaryFile;

namespace pdfcore {

/// The pages of a document in the order of its page tree.
struct PageTree
{
    std::vector<int> pageNumbers; ///< Object numbers.
    QList<QSizeF> pageSizes;      ///< In points, as a reader sees the pages.
    /// Whether the file itself holds these pages. Otherwise objects had to be changed or found by a
    /// repair, and the numbers are good for the document they were read from only.
    bool isOfFile = true;
    bool isRepaired = false; ///< MuPDF had to look for the objects in the whole file.
    /// What the document is read from instead of the file, if anything: a copy that MuPDF can read.
    /// Then `isOfFile` is about the copy.
    std::shared_ptr<QTemporaryFile> copy;
};

/// What the page tree needs to know of one of its kids.
struct PageTreeKid
{
    enum class Kind {
        Unread, ///< It has to be looked at in place.
        Page,
        Node,
        Other, ///< Neither a page nor a node with kids.
    };

    Kind kind = Kind::Unread;
    int parentNumber = 0; ///< Object number of what it names as its parent.
    QSizeF size;          ///< Of a page, in points.
};

/// US Letter, what a page without a usable size is taken to be, in points.
constexpr QSizeF kFallbackPageSize{612, 792};

/// Takes out of a page what readers ignore but MuPDF obeys. Only in memory.
void normalisePageBoxes(fz_context *ctx, pdf_obj *page);

/// The object numbers of the root's kids; 0 for a kid that is no reference.
std::vector<int> rootKidNumbers(MupdfContext &context, pdf_document *document);

/// Reads objects as kids of a page tree, from `from` up to but not including `to`, into the same
/// places of `kids`. Those outside object streams are not kept in the document's memory.
void readKids(MupdfContext &context, pdf_document *document, const std::vector<int> &numbers,
              std::size_t from, std::size_t to, std::vector<PageTreeKid> &kids);

/// Walks the page tree. MuPDF's own walk recurses, believes the counts that nodes claim and takes
/// what names no kids for a page; readers show other pages of damaged files. A node is what has
/// kids; every node counts once; damaged kids are no pages.
///
/// @param rootKids  What is known of the root's kids already; may be empty.
/// @param hasTree   Set to whether there is a page tree at all.
/// @return          False and the reason when the walk had to be given up.
bool walkPageTree(MupdfContext &context, pdf_document *document,
                  const std::vector<PageTreeKid> &rootKids, PageTree *tree, bool *hasTree,
                  QString *reason);

} // namespace pdfcore
