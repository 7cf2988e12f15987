// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/image_facts.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Buffer.hh>

#include <algorithm>
#include <array>
#include <memory>

namespace pdfcore {

namespace {

/// Samples in one direction; more is nonsense, or at least nothing to hold in memory.
constexpr long long kMaxSide = 100'000;

struct Colours
{
    int components = 0;
    bool isColour = false;
};

std::optional<Colours> deviceColours(const std::string &name)
{
    if (name == "/DeviceGray" || name == "/CalGray" || name == "/Separation") {
        return Colours{1, false};
    }
    if (name == "/DeviceRGB" || name == "/CalRGB") {
        return Colours{3, true};
    }
    if (name == "/DeviceCMYK") {
        return Colours{4, true};
    }
    return std::nullopt;
}

/// Colour spaces in which a small difference of the samples is one of the colours (ISO 32000-2,
/// 8.6).
std::optional<Colours> coloursOf(QPDFObjectHandle space)
{
    if (space.isName()) {
        const std::string name = space.getName();
        return name == "/CalGray" || name == "/CalRGB" || name == "/Separation"
                   ? std::nullopt
                   : deviceColours(name);
    }
    const std::vector<QPDFObjectHandle> parts = itemsOf(space);
    if (parts.empty() || !QPDFObjectHandle(parts[0]).isName()) {
        return std::nullopt;
    }
    const std::string family = QPDFObjectHandle(parts[0]).getName();
    if (family != "/ICCBased") {
        return deviceColours(family);
    }
    QPDFObjectHandle profile = parts.size() > 1 ? parts[1] : QPDFObjectHandle::newNull();
    QPDFObjectHandle count =
        profile.isStream() ? profile.getDict().getKey("/N") : QPDFObjectHandle::newNull();
    const long long components = count.isInteger() ? count.getIntValue() : 0;
    if (components != 1 && components != 3 && components != 4) {
        return std::nullopt;
    }
    return Colours{static_cast<int>(components), components > 1};
}

bool isTrue(QPDFObjectHandle value)
{
    return value.isBool() && value.getBoolValue();
}

/// Whether the samples can be had by undoing these filters.
bool arePlain(const std::vector<std::string> &filters)
{
    const std::array<const char *, 8> known{"/FlateDecode",   "/Fl", "/LZWDecode",
                                            "/LZW",           "/RL", "/RunLengthDecode",
                                            "/ASCII85Decode", "/A85"};
    return std::all_of(filters.begin(), filters.end(), [&known](const std::string &filter) {
        return std::find(known.begin(), known.end(), filter) != known.end() ||
               filter == "/ASCIIHexDecode" || filter == "/AHx";
    });
}

/// A length in samples; 0 when it makes no sense.
int sideOf(QPDFObjectHandle value)
{
    const long long side = value.isInteger() ? value.getIntValue() : 0;
    return side > 0 && side <= kMaxSide ? static_cast<int>(side) : 0;
}

} // namespace

std::optional<ImageFacts> imageFacts(QPDFObjectHandle image)
{
    QPDFObjectHandle dict = image.getDict();
    const std::optional<std::vector<std::string>> filters = filtersOf(image);
    const std::optional<Colours> colours = coloursOf(dict.getKey("/ColorSpace"));
    ImageFacts facts;
    facts.width = sideOf(dict.getKey("/Width"));
    facts.height = sideOf(dict.getKey("/Height"));
    if (!filters || !colours || facts.width == 0 || facts.height == 0 ||
        isTrue(dict.getKey("/ImageMask")) || dict.getKey("/Mask").isArray()) {
        return std::nullopt;
    }
    facts.components = colours->components;
    facts.isColour = colours->isColour;
    facts.isJpeg =
        filters->size() == 1 && (filters->front() == "/DCTDecode" || filters->front() == "/DCT");
    QPDFObjectHandle bits = dict.getKey("/BitsPerComponent");
    // JPEG says it by itself.
    const bool hasBytes =
        bits.isInteger() ? bits.getIntValue() == 8 : facts.isJpeg && bits.isNull();
    if (!hasBytes || (!facts.isJpeg && !arePlain(*filters))) {
        return std::nullopt;
    }
    return facts;
}

std::optional<std::vector<std::string>> filtersOf(QPDFObjectHandle stream)
{
    QPDFObjectHandle filter = stream.getDict().getKey("/Filter");
    std::vector<std::string> names;
    if (filter.isName()) {
        names.push_back(filter.getName());
    } else if (!filter.isNull() && !filter.isArray()) {
        return std::nullopt;
    }
    for (QPDFObjectHandle item : itemsOf(filter)) {
        if (!item.isName()) {
            return std::nullopt;
        }
        names.push_back(item.getName());
    }
    return names;
}

QPDFObjectHandle onlyParameters(QPDFObjectHandle stream)
{
    QPDFObjectHandle parameters = stream.getDict().getKey("/DecodeParms");
    const std::vector<QPDFObjectHandle> items = itemsOf(parameters);
    return parameters.isArray() ? (items.size() == 1 ? items[0] : QPDFObjectHandle::newNull())
                                : parameters;
}

QByteArray rawData(QPDFObjectHandle stream)
{
    const std::shared_ptr<Buffer> raw = stream.getRawStreamData();
    return QByteArray(reinterpret_cast<const char *>(raw->getBuffer()),
                      static_cast<qsizetype>(raw->getSize()));
}

} // namespace pdfcore
