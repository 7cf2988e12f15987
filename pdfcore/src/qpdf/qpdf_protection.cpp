// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/qpdf_protection.h"

#include <algorithm>
#include <vector>

namespace pdfcore {

namespace {

constexpr const char *kIdentity = "/Identity";

/// Whether what the entry `key` of the encryption dictionary stands for is left as it is; Identity
/// is what a missing entry stands for.
bool leavesAsItIs(QPDFObjectHandle encryption, const char *key)
{
    QPDFObjectHandle filter = encryption.getKey(key);
    return filter.isNull() || filter.isNameAndEquals(kIdentity);
}

std::vector<QPDFObjectHandle> listOf(QPDFObjectHandle value)
{
    return value.isArray() ? value.getArrayAsVector() : std::vector<QPDFObjectHandle>{value};
}

/// Whether the stream names a filter for encryption that changes something.
bool isLocked(QPDFObjectHandle stream)
{
    const std::vector<QPDFObjectHandle> filters = listOf(stream.getDict().getKey("/Filter"));
    std::vector<QPDFObjectHandle> parameters = listOf(stream.getDict().getKey("/DecodeParms"));
    parameters.resize(std::max(parameters.size(), filters.size()), QPDFObjectHandle::newNull());
    for (std::size_t i = 0; i < filters.size(); ++i) {
        if (QPDFObjectHandle(filters[i]).isNameAndEquals("/Crypt") &&
            parameters[i].isDictionary() && !leavesAsItIs(parameters[i], "/Name")) {
            return true;
        }
    }
    return false;
}

/// Whether the password is asked for when an attachment is opened and no earlier.
bool waitsForAttachments(QPDFObjectHandle filters)
{
    if (!filters.isDictionary()) {
        return false;
    }
    auto all = filters.getDictAsMap();
    return std::all_of(all.begin(), all.end(), [](auto &entry) {
        return entry.second.isDictionary() &&
               entry.second.getKey("/AuthEvent").isNameAndEquals("/EFOpen");
    });
}

} // namespace

bool hasKey(QPDF &document)
{
    return document.isEncrypted() &&
           (document.userPasswordMatched() || document.ownerPasswordMatched());
}

bool protectsAttachmentsOnly(QPDF &document)
{
    constexpr int kFirstVersionWithFilters = 4;
    QPDFObjectHandle encryption = document.getTrailer().getKey("/Encrypt");
    if (!encryption.isDictionary()) {
        return false;
    }
    QPDFObjectHandle version = encryption.getKey("/V");
    return version.isInteger() && version.getIntValue() >= kFirstVersionWithFilters &&
           leavesAsItIs(encryption, "/StmF") && leavesAsItIs(encryption, "/StrF") &&
           waitsForAttachments(encryption.getKey("/CF"));
}

bool hasLockedStreams(QPDF &document)
{
    const std::vector<QPDFObjectHandle> objects = document.getAllObjects();
    return std::any_of(objects.begin(), objects.end(), [](QPDFObjectHandle object) {
        return object.isStream() && isLocked(object);
    });
}

} // namespace pdfcore
