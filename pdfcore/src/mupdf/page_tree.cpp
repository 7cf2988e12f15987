// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/page_tree.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/mupdf/page_tokens.h"

#include <cmath>
#include <exception>
#include <optional>
#include <unordered_set>

namespace pdfcore {

namespace {

/// Levels of page tree nodes that are followed.
constexpr std::size_t kMaxTreeDepth = 512;

/// Levels up to which MuPDF can look up what a page inherits.
constexpr std::size_t kMaxInheritanceDepth = 64;

struct TreeLevel
{
    pdf_obj *node; ///< Kept.
    int number;
    int next;
};

/// What the walk over the page tree needs; C++ containers that are filled between MuPDF calls.
struct TreeWalk
{
    fz_context *ctx;
    pdf_document *document;
    const std::vector<PageTreeKid> &rootKids;
    PageTree &tree;
    std::vector<TreeLevel> levels;
    std::unordered_set<int> visitedNodes; ///< And lists of kids.
    KnownPageSizes sizes;
    int catalogue = 0; ///< Object number; a damaged tree may lead back to it, but it is no page.
};

/// Lets a container grow; no C++ exception may pass the frames of MuPDF.
template <typename Step>
void growing(fz_context *ctx, Step &&step)
{
    bool grown = true;
    try {
        step();
    } catch (const std::exception &) {
        grown = false;
    }
    if (!grown) {
        fz_throw(ctx, kOutOfMemoryError, "out of memory");
    }
}

void pushLevel(TreeWalk &walk, pdf_obj *node)
{
    const int number = pdf_to_num(walk.ctx, node);
    const int list = pdf_to_num(walk.ctx, pdf_dict_get(walk.ctx, node, PDF_NAME(Kids)));
    if (walk.levels.size() >= kMaxTreeDepth) {
        return;
    }
    bool isNew = true;
    growing(walk.ctx, [&] {
        isNew = (number == 0 || walk.visitedNodes.insert(number).second) &&
                (list == 0 || walk.visitedNodes.insert(list).second);
        walk.levels.reserve(walk.levels.size() + 1);
    });
    if (isNew) {
        walk.levels.push_back({pdf_keep_obj(walk.ctx, node), number, 0});
    }
}

bool hasKids(fz_context *ctx, pdf_obj *node)
{
    return pdf_is_array(ctx, pdf_dict_get(ctx, node, PDF_NAME(Kids))) != 0;
}

PageTreeKid::Kind kindOf(fz_context *ctx, pdf_obj *kid)
{
    if (pdf_is_dict(ctx, kid) == 0) {
        return PageTreeKid::Kind::Other;
    }
    if (hasKids(ctx, kid)) {
        return PageTreeKid::Kind::Node;
    }
    return pdf_name_eq(ctx, pdf_dict_get(ctx, kid, PDF_NAME(Type)), PDF_NAME(Pages)) != 0
               ? PageTreeKid::Kind::Other
               : PageTreeKid::Kind::Page;
}

QSizeF sizeOfPage(fz_context *ctx, pdf_obj *page)
{
    fz_rect mediaBox = fz_empty_rect;
    fz_matrix ctm = fz_identity;
    normalisePageBoxes(ctx, page);
    pdf_page_obj_transform(ctx, page, &mediaBox, &ctm);
    const fz_rect bounds = fz_transform_rect(mediaBox, ctm);
    const double width = static_cast<double>(bounds.x1) - static_cast<double>(bounds.x0);
    const double height = static_cast<double>(bounds.y1) - static_cast<double>(bounds.y0);
    if (!std::isfinite(width) || !std::isfinite(height) || width <= 0 || height <= 0) {
        return kFallbackPageSize;
    }
    return {width, height};
}

/// The size of a page, also of one whose entries cannot be read.
QSizeF knownSizeOfPage(fz_context *ctx, pdf_obj *page)
{
    QSizeF size = kFallbackPageSize;
    fz_var(size);
    fz_try(ctx)
    {
        size = sizeOfPage(ctx, page);
    }
    fz_catch(ctx)
    {
        if (fz_caught(ctx) == kOutOfMemoryError) {
            fz_rethrow(ctx);
        }
    }
    return size;
}

/// The object without keeping it in the document's memory; null when it has to be loaded as usual,
/// as one of an object stream, which is read whole.
pdf_obj *parseAlone(fz_context *ctx, pdf_document *document, int number)
{
    const ObjectPlace place = placeOf(ctx, document, number);
    if (place.kind == ObjectPlace::Kind::Loaded) {
        return pdf_keep_obj(ctx, place.object);
    }
    if (place.kind != ObjectPlace::Kind::InFile) {
        return nullptr;
    }
    const ParsedObject parsed = parseAt(ctx, document, place.offset);
    if (parsed.number == number && parsed.isSound) {
        return parsed.object;
    }
    pdf_drop_obj(ctx, parsed.object);
    return nullptr;
}

/// What the object is as a kid of a page tree; unread when it cannot be told this way.
PageTreeKid readKid(fz_context *ctx, pdf_document *document, int number, KnownPageSizes &sizes)
{
    PageTreeKid kid;
    std::optional<PageBoxEntries> entries;
    std::optional<QSizeF> size;
    pdf_obj *object = nullptr;
    fz_var(object);
    fz_try(ctx)
    {
        entries = readPageTokens(ctx, document, number);
        size = entries ? sizes.find(*entries) : std::nullopt;
        if (size) {
            kid = {PageTreeKid::Kind::Page, entries->parentNumber, *size};
        } else {
            object = parseAlone(ctx, document, number);
            if (object == nullptr) {
                object = pdf_load_object(ctx, document, number);
            }
            kid.kind = kindOf(ctx, object);
        }
        if (object != nullptr && kid.kind == PageTreeKid::Kind::Page) {
            kid.parentNumber = pdf_to_num(ctx, pdf_dict_get(ctx, object, PDF_NAME(Parent)));
            kid.size = sizeOfPage(ctx, object);
            if (entries) {
                sizes.remember(*entries, kid.size);
            }
        }
    }
    fz_always(ctx)
    {
        pdf_drop_obj(ctx, object);
    }
    fz_catch(ctx)
    {
        kid = PageTreeKid();
    }
    return kid;
}

/// The number of a page object; one that stands directly in its parent becomes an object first.
int pageNumber(TreeWalk &walk, pdf_obj *page)
{
    const int number = pdf_to_num(walk.ctx, page);
    if (number != 0) {
        return number;
    }
    pdf_obj *reference = pdf_add_object(walk.ctx, walk.document, page);
    const int added = pdf_to_num(walk.ctx, reference);
    pdf_drop_obj(walk.ctx, reference);
    walk.tree.isOfFile = false;
    return added;
}

/// Makes sure that the page inherits from the nodes above it, also where its own way up is wrong or
/// too long for MuPDF: then what it would inherit is written into it. Only in memory.
void settleInheritance(TreeWalk &walk, pdf_obj *page)
{
    fz_context *ctx = walk.ctx;
    pdf_obj *parent = pdf_dict_get(ctx, page, PDF_NAME(Parent));
    if (walk.levels.size() <= kMaxInheritanceDepth &&
        pdf_resolve_indirect(ctx, parent) == pdf_resolve_indirect(ctx, walk.levels.back().node)) {
        return;
    }
    walk.tree.isOfFile = false;
    for (pdf_obj *key :
         {PDF_NAME(Resources), PDF_NAME(MediaBox), PDF_NAME(CropBox), PDF_NAME(Rotate)}) {
        for (auto level = walk.levels.rbegin();
             level != walk.levels.rend() && pdf_dict_get(ctx, page, key) == nullptr; ++level) {
            pdf_obj *value = pdf_dict_get(ctx, level->node, key);
            if (value != nullptr) {
                pdf_dict_put(ctx, page, key, value);
            }
        }
    }
    pdf_dict_del(ctx, page, PDF_NAME(Parent));
}

void addPage(TreeWalk &walk, int number, QSizeF size)
{
    growing(walk.ctx, [&] {
        walk.tree.pageNumbers.push_back(number);
        walk.tree.pageSizes.append(size);
    });
}

void addPage(TreeWalk &walk, pdf_obj *page)
{
    const int number = pageNumber(walk, page);
    addPage(walk, number, knownSizeOfPage(walk.ctx, page));
}

/// Looks at a kid in the document's memory, which may change it.
void visitInPlace(TreeWalk &walk, pdf_obj *kid)
{
    switch (kindOf(walk.ctx, kid)) {
    case PageTreeKid::Kind::Node:
        pushLevel(walk, kid);
        break;
    case PageTreeKid::Kind::Page:
        settleInheritance(walk, kid);
        addPage(walk, kid);
        break;
    default:
        break;
    }
}

void visit(TreeWalk &walk, pdf_obj *kid, int index)
{
    const TreeLevel &level = walk.levels.back();
    const int number = pdf_to_num(walk.ctx, kid);
    if (number != 0 && number == walk.catalogue) {
        return;
    }
    const bool isKnown =
        walk.levels.size() == 1 && static_cast<std::size_t>(index) < walk.rootKids.size();
    PageTreeKid read;
    if (isKnown) {
        read = walk.rootKids[static_cast<std::size_t>(index)];
    } else if (number != 0) {
        read = readKid(walk.ctx, walk.document, number, walk.sizes);
    }

    if (read.kind == PageTreeKid::Kind::Other) {
        return;
    }
    const bool inheritsAsItStands = level.number != 0 && read.parentNumber == level.number &&
                                    walk.levels.size() <= kMaxInheritanceDepth;
    if (read.kind != PageTreeKid::Kind::Page || !inheritsAsItStands) {
        visitInPlace(walk, kid);
        return;
    }
    addPage(walk, number, read.size);
}

pdf_obj *rootOf(fz_context *ctx, pdf_document *document)
{
    return pdf_dict_getp(ctx, pdf_trailer(ctx, document), "Root/Pages");
}

void walkFrom(TreeWalk &walk, pdf_obj *root)
{
    fz_context *ctx = walk.ctx;
    if (!hasKids(ctx, root)) {
        if (pdf_name_eq(ctx, pdf_dict_get(ctx, root, PDF_NAME(Type)), PDF_NAME(Page)) != 0) {
            addPage(walk, root);
        }
        return;
    }
    pushLevel(walk, root);
    while (!walk.levels.empty()) {
        TreeLevel &level = walk.levels.back();
        pdf_obj *kids = pdf_dict_get(ctx, level.node, PDF_NAME(Kids));
        if (level.next >= pdf_array_len(ctx, kids)) {
            pdf_drop_obj(ctx, level.node);
            walk.levels.pop_back();
            continue;
        }
        const int index = level.next++;
        pdf_obj *kid = pdf_array_get(ctx, kids, index);
        fz_try(ctx)
        {
            visit(walk, kid, index);
        }
        fz_catch(ctx)
        {
            // A kid that cannot be read is no page; the others still are.
            if (fz_caught(ctx) == kOutOfMemoryError) {
                fz_rethrow(ctx);
            }
        }
    }
}

} // namespace

void normalisePageBoxes(fz_context *ctx, pdf_obj *page)
{
    pdf_obj *unit = pdf_dict_get(ctx, page, PDF_NAME(UserUnit));
    if (unit != nullptr && !(pdf_to_real(ctx, unit) > 0)) {
        pdf_dict_del(ctx, page, PDF_NAME(UserUnit));
    }

    pdf_obj *cropBox = pdf_dict_get_inheritable(ctx, page, PDF_NAME(CropBox));
    if (cropBox == nullptr) {
        return;
    }
    const fz_rect crop = pdf_to_rect(ctx, cropBox);
    const fz_rect media = pdf_to_rect(ctx, pdf_dict_get_inheritable(ctx, page, PDF_NAME(MediaBox)));
    if (fz_is_empty_rect(media) != 0) {
        return;
    }
    // Since 1.25 MuPDF takes a page with a crop box that is no box for one of US Letter.
    if (fz_is_empty_rect(crop) != 0 || fz_is_empty_rect(fz_intersect_rect(media, crop)) != 0) {
        pdf_dict_put_rect(ctx, page, PDF_NAME(CropBox), media);
    }
}

std::vector<int> rootKidNumbers(MupdfContext &context, pdf_document *document)
{
    std::vector<int> numbers;
    context.run(
        [&](fz_context *ctx) {
            pdf_obj *kids = pdf_dict_get(ctx, rootOf(ctx, document), PDF_NAME(Kids));
            const int count = pdf_array_len(ctx, kids);
            growing(ctx, [&] { numbers.reserve(static_cast<std::size_t>(count)); });
            for (int i = 0; i < count; ++i) {
                numbers.push_back(pdf_to_num(ctx, pdf_array_get(ctx, kids, i)));
            }
        },
        nullptr);
    return numbers;
}

void readKids(MupdfContext &context, pdf_document *document, const std::vector<int> &numbers,
              std::size_t from, std::size_t to, std::vector<PageTreeKid> &kids)
{
    KnownPageSizes sizes;
    for (std::size_t i = from; i < to && !context.isOutOfTime(); ++i) {
        if (numbers[i] != 0) {
            kids[i] = readKid(context.get(), document, numbers[i], sizes);
        }
    }
}

bool walkPageTree(MupdfContext &context, pdf_document *document,
                  const std::vector<PageTreeKid> &rootKids, PageTree *tree, bool *hasTree,
                  QString *reason)
{
    TreeWalk walk{context.get(), document, rootKids, *tree, {}, {}, {}, 0};
    const bool walked = context.run(
        [&](fz_context *ctx) {
            pdf_obj *root = rootOf(ctx, document);
            walk.catalogue =
                pdf_to_num(ctx, pdf_dict_get(ctx, pdf_trailer(ctx, document), PDF_NAME(Root)));
            *hasTree = pdf_is_dict(ctx, root) != 0;
            if (*hasTree) {
                walkFrom(walk, root);
            }
        },
        reason);
    for (const TreeLevel &level : walk.levels) {
        pdf_drop_obj(context.get(), level.node);
    }
    if (pdf_was_repaired(context.get(), document) != 0) {
        tree->isOfFile = false;
        tree->isRepaired = true;
    }
    return walked;
}

} // namespace pdfcore
