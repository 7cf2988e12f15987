// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/object_places.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/mupdf/protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"

#include <algorithm>
#include <exception>
#include <map>
#include <vector>

#include <qpdf/QPDFXRefEntry.hh>

namespace pdfcore {

namespace {

/// To MuPDF an object begins with the space or comment before it. No object is as short as this.
constexpr int64_t kMaxSpaceBefore = 16;

/// Where each object is, by its number, as MuPDF found it; nothing when that cannot be told.
std::vector<ObjectPlace> placesOf(MupdfContext &context, pdf_document *document)
{
    const int count = pdf_xref_len(context.get(), document);
    std::vector<ObjectPlace> places(static_cast<std::size_t>(count));
    const bool found = context.run(
        [&](fz_context *ctx) {
            for (int number = 1; number < count; ++number) {
                places[static_cast<std::size_t>(number)] = placeOf(ctx, document, number);
            }
        },
        nullptr);
    return found ? places : std::vector<ObjectPlace>();
}

/// Where QPDF finds objects in the file, by their numbers; 0 for those in object streams.
std::map<int, qpdf_offset_t> offsetsOf(QPDF &document)
{
    constexpr int kInFile = 1;
    std::map<int, qpdf_offset_t> offsets;
    for (const auto &[id, entry] : document.getXRefTable()) {
        offsets[id.getObj()] = entry.getType() == kInFile ? entry.getOffset() : 0;
    }
    return offsets;
}

bool isMissing(const ObjectPlace &place)
{
    return place.kind == ObjectPlace::Kind::Nowhere;
}

/// Whether the repair found nothing of what only a trailer says.
bool lacksTrailer(MupdfContext &context, pdf_document *document)
{
    bool isFound = true;
    context.run(
        [&](fz_context *ctx) {
            pdf_obj *trailer = pdf_trailer(ctx, document);
            isFound = pdf_dict_get(ctx, trailer, PDF_NAME(ID)) != nullptr ||
                      pdf_dict_get(ctx, trailer, PDF_NAME(Encrypt)) != nullptr;
        },
        nullptr);
    return !isFound;
}

} // namespace

FoundObjects compareObjects(MupdfContext &context, pdf_document *document, QPDF &other)
{
    const std::vector<ObjectPlace> places = placesOf(context, document);
    std::map<int, qpdf_offset_t> offsets = offsetsOf(other);
    for (std::size_t number = 1; number < places.size(); ++number) {
        const ObjectPlace &place = places[number];
        const auto found = offsets.find(static_cast<int>(number));
        if (isMissing(place)) {
            continue;
        }
        if (found == offsets.end()) {
            return FoundObjects::Different;
        }
        const int64_t distance = found->second - place.offset;
        const bool canBeTold = place.offset != 0 && found->second != 0;
        if (canBeTold && (distance < 0 || distance > kMaxSpaceBefore)) {
            return FoundObjects::Different;
        }
        offsets.erase(found);
    }
    return offsets.empty() ? FoundObjects::Same : FoundObjects::MoreWithQpdf;
}

bool hasLostObjects(MupdfContext &context, pdf_document *document, const QString &path,
                    const QString &password, QDeadlineTimer deadline)
{
    const std::vector<ObjectPlace> places = placesOf(context, document);
    // Number 0 is no object.
    const bool mayLack =
        !places.empty() && (std::any_of(places.begin() + 1, places.end(), isMissing) ||
                            lacksTrailer(context, document));
    if (!mayLack) {
        return false;
    }
    try {
        EngineError outcome;
        const auto other = openQpdf(path, password, &outcome, Damage::Repair, deadline);
        if (outcome.code == PdfBackendError::PasswordRequired ||
            outcome.code == PdfBackendError::InvalidPassword) {
            return protectionOf(context, document).isEmpty();
        }
        return other && compareObjects(context, document, *other) == FoundObjects::MoreWithQpdf;
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace pdfcore
