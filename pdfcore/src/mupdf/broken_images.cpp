// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/broken_images.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"

#include <exception>
#include <unordered_set>
#include <vector>

namespace pdfcore {

namespace {

/// What is still to be looked at; C++ containers that are filled between MuPDF calls.
struct ImageSearch
{
    fz_context *ctx;
    pdf_document *document;
    std::vector<pdf_obj *> resources; ///< Borrowed from the document.
    std::unordered_set<int> visited;  ///< Object numbers.
    bool hasFound = false;
};

void addResources(ImageSearch &search, pdf_obj *resources)
{
    bool grown = true;
    try {
        search.resources.push_back(resources);
    } catch (const std::exception &) {
        grown = false;
    }
    if (!grown) {
        fz_throw(search.ctx, kOutOfMemoryError, "out of memory");
    }
}

/// Whether the object is looked at for the first time. What is no object of its own is part of
/// another.
bool isNew(ImageSearch &search, pdf_obj *object)
{
    const int number = pdf_to_num(search.ctx, object);
    bool inserted = true;
    bool grown = true;
    try {
        inserted = number == 0 || search.visited.insert(number).second;
    } catch (const std::exception &) {
        grown = false;
    }
    if (!grown) {
        fz_throw(search.ctx, kOutOfMemoryError, "out of memory");
    }
    return inserted;
}

bool canBeLoaded(const ImageSearch &search, pdf_obj *image)
{
    fz_context *ctx = search.ctx;
    bool isLoaded = true;
    fz_var(isLoaded);
    fz_try(ctx)
    {
        fz_drop_image(ctx, pdf_load_image(ctx, search.document, image));
    }
    fz_catch(ctx)
    {
        if (fz_caught(ctx) == kOutOfMemoryError) {
            fz_rethrow(ctx);
        }
        isLoaded = false;
    }
    return isLoaded;
}

void searchXObjects(ImageSearch &search, pdf_obj *xObjects)
{
    fz_context *ctx = search.ctx;
    for (int i = pdf_dict_len(ctx, xObjects) - 1; i >= 0; --i) {
        pdf_obj *object = pdf_dict_get_val(ctx, xObjects, i);
        pdf_obj *type = pdf_dict_get(ctx, object, PDF_NAME(Subtype));
        if (pdf_name_eq(ctx, type, PDF_NAME(Image)) == 0) {
            if (isNew(search, object)) {
                addResources(search, pdf_dict_get(ctx, object, PDF_NAME(Resources)));
            }
        } else if (!canBeLoaded(search, object)) {
            pdf_dict_del(ctx, xObjects, pdf_dict_get_key(ctx, xObjects, i));
            search.hasFound = true;
        }
    }
}

/// Notes the resources of what has some, which may be nothing.
void searchOwner(ImageSearch &search, pdf_obj *owner)
{
    if (pdf_is_dict(search.ctx, owner) != 0 && isNew(search, owner)) {
        addResources(search, pdf_dict_get(search.ctx, owner, PDF_NAME(Resources)));
    }
}

/// Notes the resources of all values of a dictionary.
void searchOwners(ImageSearch &search, pdf_obj *owners)
{
    for (int i = 0; i < pdf_dict_len(search.ctx, owners); ++i) {
        searchOwner(search, pdf_dict_get_val(search.ctx, owners, i));
    }
}

/// Notes the resources of the groups that are the soft masks of graphics states.
void searchSoftMasks(ImageSearch &search, pdf_obj *states)
{
    fz_context *ctx = search.ctx;
    for (int i = 0; i < pdf_dict_len(ctx, states); ++i) {
        pdf_obj *mask = pdf_dict_get(ctx, pdf_dict_get_val(ctx, states, i), PDF_NAME(SMask));
        searchOwner(search, pdf_dict_get(ctx, mask, PDF_NAME(G)));
    }
}

void searchAnnotations(ImageSearch &search, pdf_obj *annotations)
{
    fz_context *ctx = search.ctx;
    for (int i = 0; i < pdf_array_len(ctx, annotations); ++i) {
        pdf_obj *appearances = pdf_dict_get(ctx, pdf_array_get(ctx, annotations, i), PDF_NAME(AP));
        searchOwners(search, appearances);
        searchOwners(search, pdf_dict_get(ctx, appearances, PDF_NAME(N)));
    }
}

} // namespace

bool dropBrokenImages(fz_context *ctx, pdf_document *document, pdf_obj *page)
{
    ImageSearch search{ctx, document, {}, {}};
    fz_try(ctx)
    {
        addResources(search, pdf_dict_get_inheritable(ctx, page, PDF_NAME(Resources)));
        searchAnnotations(search, pdf_dict_get(ctx, page, PDF_NAME(Annots)));
        while (!search.resources.empty()) {
            pdf_obj *resources = search.resources.back();
            search.resources.pop_back();
            searchXObjects(search, pdf_dict_get(ctx, resources, PDF_NAME(XObject)));
            searchOwners(search, pdf_dict_get(ctx, resources, PDF_NAME(Pattern)));
            searchOwners(search, pdf_dict_get(ctx, resources, PDF_NAME(Font)));
            searchSoftMasks(search, pdf_dict_get(ctx, resources, PDF_NAME(ExtGState)));
        }
    }
    fz_catch(ctx)
    {
        // The containers are let go of by what follows the error, as long as nothing is thrown
        // here.
        search.hasFound = false;
    }
    return search.hasFound;
}

} // namespace pdfcore
