// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/signatures.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/qpdf/qpdf_source.h"

#include <set>
#include <vector>

namespace pdfcore {

namespace {

bool isSignature(QPDFObjectHandle value)
{
    return value.isDictionary() && (value.hasKey("/ByteRange") || hasName(value, "/Type", "/Sig") ||
                                    hasName(value, "/Type", "/DocTimeStamp"));
}

/// A field of type signature with any value, or any field whose value is a signature.
bool isSignedField(QPDFObjectHandle field)
{
    QPDFObjectHandle value = entryOf(field, "/V");
    return isSignature(value) || (hasName(field, "/FT", "/Sig") && value.isDictionary());
}

bool hasSignedField(QPDFObjectHandle fields)
{
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> waiting = itemsOf(fields);
    while (!waiting.empty()) {
        const QPDFObjectHandle field = waiting.back();
        waiting.pop_back();
        if (QPDFObjectHandle(field).isIndirect() && !seen.insert(field.getObjGen()).second) {
            continue;
        }
        if (isSignedField(field)) {
            return true;
        }
        const std::vector<QPDFObjectHandle> kids = itemsOf(entryOf(field, "/Kids"));
        waiting.insert(waiting.end(), kids.begin(), kids.end());
    }
    return false;
}

} // namespace

bool isSigned(QPDF &document)
{
    QPDFObjectHandle root = document.getRoot();
    QPDFObjectHandle permissions = entryOf(root, "/Perms");
    if (permissions.isDictionary() && !permissions.getKeys().empty()) {
        return true;
    }
    if (hasSignedField(entryOf(entryOf(root, "/AcroForm"), "/Fields"))) {
        return true;
    }
    for (QPDFObjectHandle page : pagesOf(document)) {
        for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            if (isSignedField(annotation)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace pdfcore
