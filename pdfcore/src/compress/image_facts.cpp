// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/image_facts.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Buffer.hh>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <set>

namespace pdfcore {

namespace {

/// Samples in one direction; more is nonsense, or at least nothing to hold in memory.
constexpr long long kMaxSide = 100'000;
/// Bytes that a palette takes in its file. What is beyond stands for far more than that.
constexpr qsizetype kMaxTable = 4096;
/// The highest number of a colour that a sample of 8 bits can be.
constexpr long long kLastColour = 255;

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

bool isIndexed(QPDFObjectHandle space)
{
    const std::vector<QPDFObjectHandle> parts = itemsOf(space);
    return parts.size() == 4 && QPDFObjectHandle(parts[0]).isNameAndEquals("/Indexed");
}

/// The colours of an indexed colour space (ISO 32000-2, 8.6.6.3); what is beyond them is the last.
std::vector<std::uint8_t> paletteOf(QPDFObjectHandle space, std::size_t components)
{
    const std::vector<QPDFObjectHandle> parts = itemsOf(space);
    QPDFObjectHandle highest = parts[2];
    QPDFObjectHandle table = parts[3];
    std::string colours;
    if (table.isString()) {
        colours = table.getStringValue();
    } else if (table.isStream() && rawData(table).size() <= kMaxTable &&
               filtersOf(table).value_or(std::vector<std::string>(2)).size() < 2) {
        const std::shared_ptr<Buffer> data = table.getStreamData(qpdf_dl_generalized);
        colours.assign(reinterpret_cast<const char *>(data->getBuffer()), data->getSize());
    }
    const long long last = highest.isInteger() ? highest.getIntValue() : -1;
    if (last < 0 || last > kLastColour ||
        colours.size() < (static_cast<std::size_t>(last) + 1) * components) {
        return {};
    }
    std::vector<std::uint8_t> palette;
    for (long long i = 0; i <= kLastColour; ++i) {
        const std::size_t from = static_cast<std::size_t>(std::min(i, last)) * components;
        palette.insert(palette.end(), colours.begin() + static_cast<std::ptrdiff_t>(from),
                       colours.begin() + static_cast<std::ptrdiff_t>(from + components));
    }
    return palette;
}

bool isTrue(QPDFObjectHandle value)
{
    return value.isBool() && value.getBoolValue();
}

/// Whether samples of certain values are not shown. A soft mask overrides that (ISO 32000-2,
/// 8.9.5.1).
bool hasColourKey(QPDFObjectHandle dict)
{
    return dict.getKey("/Mask").isArray() && !dict.getKey("/SMask").isStream();
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
    QPDFObjectHandle space = dict.getKey("/ColorSpace");
    const std::optional<Colours> colours = coloursOf(baseOf(space));
    ImageFacts facts;
    facts.width = sideOf(dict.getKey("/Width"));
    facts.height = sideOf(dict.getKey("/Height"));
    if (!filters || !colours || facts.width == 0 || facts.height == 0 ||
        isTrue(dict.getKey("/ImageMask")) || hasColourKey(dict)) {
        return std::nullopt;
    }
    facts.components = colours->components;
    facts.isColour = colours->isColour;
    facts.isJpeg = endsInJpeg(*filters);
    QPDFObjectHandle bits = dict.getKey("/BitsPerComponent");
    // JPEG says it by itself.
    const bool hasBytes =
        bits.isInteger() ? bits.getIntValue() == 8 : facts.isJpeg && bits.isNull();
    if (!hasBytes || (!facts.isJpeg && !areGeneral(*filters))) {
        return std::nullopt;
    }
    if (isIndexed(space)) {
        facts.palette = paletteOf(space, static_cast<std::size_t>(facts.components));
        if (facts.palette.empty() || facts.isJpeg || !dict.getKey("/Decode").isNull()) {
            return std::nullopt;
        }
    }
    return facts;
}

QPDFObjectHandle baseOf(QPDFObjectHandle colourSpace)
{
    return isIndexed(colourSpace) ? colourSpace.getArrayItem(1) : colourSpace;
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

bool areGeneral(const std::vector<std::string> &filters)
{
    static const std::set<std::string> kGeneral{"/FlateDecode",     "/Fl", "/LZWDecode",     "/LZW",
                                                "/RunLengthDecode", "/RL", "/ASCII85Decode", "/A85",
                                                "/ASCIIHexDecode",  "/AHx"};
    return std::all_of(filters.begin(), filters.end(), [](const std::string &filter) {
        return kGeneral.find(filter) != kGeneral.end();
    });
}

bool endsInJpeg(const std::vector<std::string> &filters)
{
    return !filters.empty() && (filters.back() == "/DCTDecode" || filters.back() == "/DCT") &&
           areGeneral({filters.begin(), filters.end() - 1});
}

QPDFObjectHandle lastParameters(QPDFObjectHandle stream)
{
    QPDFObjectHandle filter = stream.getDict().getKey("/Filter");
    QPDFObjectHandle parameters = stream.getDict().getKey("/DecodeParms");
    const std::size_t count = filter.isArray() ? itemsOf(filter).size() : 1;
    if (!parameters.isArray()) {
        return count == 1 ? parameters : QPDFObjectHandle::newNull();
    }
    const std::vector<QPDFObjectHandle> items = itemsOf(parameters);
    return items.size() == count && count > 0 ? items.back() : QPDFObjectHandle::newNull();
}

QByteArray rawData(QPDFObjectHandle stream)
{
    const std::shared_ptr<Buffer> raw = stream.getRawStreamData();
    return QByteArray(reinterpret_cast<const char *>(raw->getBuffer()),
                      static_cast<qsizetype>(raw->getSize()));
}

QByteArray dataOfLastFilter(QPDFObjectHandle stream)
{
    std::vector<QPDFObjectHandle> filters = itemsOf(stream.getDict().getKey("/Filter"));
    if (filters.size() < 2) {
        return rawData(stream);
    }
    // QPDF undoes all filters or none: it gets a stream that has one less.
    QPDFObjectHandle outer = QPDFObjectHandle::newStream(stream.getOwningQPDF());
    std::vector<QPDFObjectHandle> parameters = itemsOf(stream.getDict().getKey("/DecodeParms"));
    parameters.resize(filters.size(), QPDFObjectHandle::newNull());
    filters.pop_back();
    parameters.pop_back();
    const bool hasParameters = std::any_of(parameters.begin(), parameters.end(),
                                           [](QPDFObjectHandle one) { return !one.isNull(); });
    outer.replaceStreamData(stream.getRawStreamData(), QPDFObjectHandle::newArray(filters),
                            hasParameters ? QPDFObjectHandle::newArray(parameters)
                                          : QPDFObjectHandle::newNull());
    const std::shared_ptr<Buffer> data = outer.getStreamData(qpdf_dl_generalized);
    return QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                      static_cast<qsizetype>(data->getSize()));
}

} // namespace pdfcore
