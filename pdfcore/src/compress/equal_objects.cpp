// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/equal_objects.h"

#include "pdfcore/src/compress/image_facts.h"
#include "pdfcore/src/compress/object_graph.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <set>
#include <string>

namespace pdfcore {

namespace {

/// What is equal may become so only once what it refers to is the same: a font by its descriptor,
/// and that by its file. No chain of such objects is longer.
constexpr int kMaxRounds = 8;
/// Bytes of a dictionary or an array as text beyond which it is not looked at.
constexpr std::size_t kMaxText = std::size_t{1} << 20;

using Others = std::map<QPDFObjGen, QPDFObjectHandle>;

bool isNumbers(QPDFObjectHandle array)
{
    const std::vector<QPDFObjectHandle> items = itemsOf(array);
    return !items.empty() && std::all_of(items.begin(), items.end(), [](QPDFObjectHandle item) {
        return !item.isIndirect() && item.isNumber();
    });
}

/// Whether it does not matter which one of two such objects is meant.
bool isPlainValue(QPDFObjectHandle object)
{
    if (object.isArray()) {
        static const std::set<std::string> kSpaces{
            "/ICCBased", "/Indexed", "/Separation", "/DeviceN", "/CalRGB", "/CalGray", "/Lab"};
        const bool hasName = object.getArrayNItems() > 1 && object.getArrayItem(0).isName() &&
                             kSpaces.find(object.getArrayItem(0).getName()) != kSpaces.end();
        return hasName || isNumbers(object);
    }
    if (!object.isDictionary()) {
        return false;
    }
    const std::array<const char *, 4> types{"/Font", "/FontDescriptor", "/Encoding", "/ExtGState"};
    return std::any_of(types.begin(), types.end(),
                       [&object](const char *type) { return hasName(object, "/Type", type); });
}

long long lengthOf(QPDFObjectHandle stream)
{
    QPDFObjectHandle length = stream.getDict().getKey("/Length");
    return length.isInteger() ? length.getIntValue() : -1;
}

/// Texts that are equal for streams whose data are, each with the stream; those alone in their
/// length are left out.
std::map<QPDFObjGen, std::string> digests(const std::vector<QPDFObjectHandle> &objects,
                                          const PdfCancelFlag &cancel)
{
    std::map<long long, std::vector<QPDFObjectHandle>> byLength;
    for (QPDFObjectHandle object : objects) {
        if (object.isStream() && lengthOf(object) >= 0) {
            byLength[lengthOf(object)].push_back(object);
        }
    }
    std::map<QPDFObjGen, std::string> found;
    for (const auto &[length, streams] : byLength) {
        if (streams.size() < 2) {
            continue;
        }
        for (const QPDFObjectHandle &stream : streams) {
            if (cancel.isSet()) {
                return {};
            }
            try {
                found[stream.getObjGen()] =
                    QCryptographicHash::hash(rawData(stream), QCryptographicHash::Sha256)
                        .toStdString();
            } catch (const std::exception &) {
                // What cannot be read is equal to nothing.
                continue;
            }
        }
    }
    return found;
}

/// What the dictionary of a stream says but for the length of its data.
std::string dictText(QPDFObjectHandle stream)
{
    QPDFObjectHandle dict = stream.getDict().shallowCopy();
    dict.removeKey("/Length");
    return dict.unparse();
}

/// The objects that are equal to others that come before them.
Others equalOnes(const std::vector<QPDFObjectHandle> &objects,
                 const std::map<QPDFObjGen, std::string> &digests, const Others &gone)
{
    std::map<std::string, QPDFObjectHandle> first;
    Others equal;
    for (QPDFObjectHandle object : objects) {
        if (gone.find(object.getObjGen()) != gone.end()) {
            continue;
        }
        std::string text;
        if (object.isStream()) {
            const auto digest = digests.find(object.getObjGen());
            if (digest == digests.end()) {
                continue;
            }
            text = digest->second + dictText(object);
        } else if (isPlainValue(object)) {
            text = object.unparseResolved();
        } else {
            continue;
        }
        if (text.size() > kMaxText) {
            continue;
        }
        const auto [kept, isNew] = first.emplace(std::move(text), object);
        if (!isNew) {
            equal.emplace(object.getObjGen(), kept->second);
        }
    }
    return equal;
}

} // namespace

void joinEqualObjects(QPDF &document, const std::vector<QPDFObjectHandle> &objects,
                      const PdfCancelFlag &cancel)
{
    const std::map<QPDFObjGen, std::string> known = digests(objects, cancel);
    Others gone;
    for (int round = 0; round < kMaxRounds && !cancel.isSet(); ++round) {
        const Others equal = equalOnes(objects, known, gone);
        if (equal.empty()) {
            return;
        }
        redirect(document, objects, equal);
        gone.insert(equal.begin(), equal.end());
    }
}

} // namespace pdfcore
