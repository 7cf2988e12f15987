// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// The value of a key, or null where there is no dictionary at all.
inline QPDFObjectHandle entryOf(QPDFObjectHandle object, const std::string &key)
{
    return object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
}

/// Whether the value of a key is this name.
inline bool hasName(QPDFObjectHandle object, const std::string &key, const std::string &name)
{
    return entryOf(object, key).isNameAndEquals(name);
}

/// The items of an array; none where there is no array.
inline std::vector<QPDFObjectHandle> itemsOf(QPDFObjectHandle array)
{
    if (!array.isArray()) {
        return {};
    }
    return array.getArrayAsVector();
}

/// Whether two handles stand for one object of a file.
inline bool isSameObject(QPDFObjectHandle a, QPDFObjectHandle b)
{
    return a.isIndirect() && b.isIndirect() && a.getObjGen() == b.getObjGen();
}

} // namespace pdfcore
