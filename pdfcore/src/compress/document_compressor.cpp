// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/document_compressor.h"

#include "pdfcore/src/compress/equal_objects.h"
#include "pdfcore/src/compress/inline_images.h"
#include "pdfcore/src/compress/object_graph.h"
#include "pdfcore/src/compress/stream_packer.h"
#include "pdfcore/src/compress/stream_spool.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/qpdf/qpdf_source.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace pdfcore {

namespace {

/// Takes out what no reader needs (ISO 32000-2, 12.3.4 and 14.5).
void dropUnneeded(const std::vector<QPDFObjectHandle> &objects)
{
    for (QPDFObjectHandle object : objects) {
        if (object.isStream()) {
            object.getDict().removeKey("/PieceInfo");
        } else if (hasName(object, "/Type", "/Page")) {
            object.removeKey("/Thumb");
            object.removeKey("/PieceInfo");
        } else if (hasName(object, "/Type", "/Catalog")) {
            object.removeKey("/PieceInfo");
        }
    }
}

bool isImage(QPDFObjectHandle object)
{
    return object.isStream() && hasName(object.getDict(), "/Subtype", "/Image");
}

/// Streams that QPDF makes anew, or that are to be readable as they are.
bool isLeftAlone(QPDFObjectHandle stream, bool keepsMetadata)
{
    QPDFObjectHandle dict = stream.getDict();
    return hasName(dict, "/Type", "/XRef") || hasName(dict, "/Type", "/ObjStm") ||
           (keepsMetadata && hasName(dict, "/Type", "/Metadata"));
}

QPDFObjectHandle parametersOf(const NewImage &image)
{
    if (!image.hasFilters) {
        return QPDFObjectHandle::newNull();
    }
    return filterParameters(image.components, image.width);
}

void replaceImage(QPDFObjectHandle image, const NewImage &by, StreamSpool &spool)
{
    QPDFObjectHandle dict = image.getDict();
    spool.replace(image, by.data, by.isJpeg ? "/DCTDecode" : "/FlateDecode", parametersOf(by));
    dict.replaceKey("/Width", QPDFObjectHandle::newInteger(by.width));
    dict.replaceKey("/Height", QPDFObjectHandle::newInteger(by.height));
    dict.replaceKey("/ColorSpace", baseOf(dict.getKey("/ColorSpace")));
    dict.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
    if (dict.getKey("/Mask").isArray()) {
        // A soft mask overrides it, but not every reader knows.
        dict.removeKey("/Mask");
    }
}

/// Makes the images smaller; returns those that were changed.
std::set<QPDFObjGen> shrinkImages(QPDF &document, const std::vector<QPDFObjectHandle> &objects,
                                  const ImageAims &aims, StreamSpool &spool,
                                  const PdfCancelFlag &cancel)
{
    std::set<QPDFObjGen> changed;
    const bool areThere = std::any_of(objects.begin(), objects.end(),
                                      [](QPDFObjectHandle object) { return isImage(object); });
    if (!areThere) {
        return changed;
    }
    const ImageUses uses(pagesOf(document), cancel);
    const ImageShrinker shrinker(aims, cancel);
    for (const QPDFObjectHandle &object : objects) {
        if (cancel.isSet() || !isImage(object)) {
            continue;
        }
        const QPDFObjGen number = object.getObjGen();
        const bool isBound = uses.preblended().find(number) != uses.preblended().end();
        std::optional<NewImage> smaller;
        try {
            smaller = shrinker.shrink(object, uses.of(number), isBound);
        } catch (const std::exception &) {
            // An image that cannot be read stays as it is.
            continue;
        }
        if (smaller) {
            replaceImage(object, *smaller, spool);
            changed.insert(number);
        }
    }
    return changed;
}

} // namespace

void compressDocument(QPDF &document, const ImageAims &aims, bool keepsMetadata,
                      const PdfCancelFlag &cancel)
{
    dropUnneeded(reachableObjects(document));
    takeOutInlineImages(pagesOf(document), cancel);
    joinEqualObjects(document, reachableObjects(document), cancel);
    const std::vector<QPDFObjectHandle> objects = reachableObjects(document);
    const auto spool = std::make_shared<StreamSpool>();
    const std::set<QPDFObjGen> changed = shrinkImages(document, objects, aims, *spool, cancel);
    StreamPacker packer(*spool, cancel);
    for (const QPDFObjectHandle &object : objects) {
        const bool isPacked = changed.find(object.getObjGen()) != changed.end();
        if (cancel.isSet()) {
            return;
        }
        QPDFObjectHandle stream = object;
        if (stream.isStream() && !isPacked && !isLeftAlone(stream, keepsMetadata)) {
            packer.pack(stream);
        }
    }
}

} // namespace pdfcore
