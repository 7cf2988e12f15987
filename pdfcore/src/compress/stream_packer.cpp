// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/stream_packer.h"

#include "pdfcore/src/compress/image_facts.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFExc.hh>

#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace pdfcore {

namespace {

/// Bytes of a dictionary that naming a filter takes, and the parameters of one.
constexpr qsizetype kFilterBytes = 20;
constexpr qsizetype kParameterBytes = 60;
/// Bytes of a colour profile that is more than a few curves.
constexpr qsizetype kLeastProfile = 16 * 1024;
/// How many times smaller data are without PNG filters when these do not help any more.
constexpr qsizetype kPoorRatio = 50;
/// How many times smaller data are when the best compression takes forever, for next to nothing.
constexpr qsizetype kSlowRatio = 16;
/// Bytes of one document up to which the best compression is worth its time.
constexpr qsizetype kBestBytes = qsizetype{16} * 1024 * 1024;
/// The same for one stream; it cannot be cancelled on the way.
constexpr qsizetype kBestStream = qsizetype{2} * 1024 * 1024;

bool isFlateAlone(const std::vector<std::string> &filters)
{
    return filters.size() == 1 && (filters.front() == "/FlateDecode" || filters.front() == "/Fl");
}

QByteArray decoded(QPDFObjectHandle stream)
{
    const std::shared_ptr<Buffer> data = stream.getStreamData(qpdf_dl_specialized);
    return QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                      static_cast<qsizetype>(data->getSize()));
}

bool hasPredictor(QPDFObjectHandle parameters)
{
    QPDFObjectHandle predictor = entryOf(parameters, "/Predictor");
    return predictor.isInteger() && predictor.getIntValue() > 1;
}

/// How data may be divided into rows of samples.
struct Shape
{
    int components = 0;
    int width = 0;
};

/// Samples in a row of a profile, about; any number does, even all in one row.
constexpr qsizetype kProfileRow = 256;

/// The shapes of a colour profile (ICC.1:2010, 7.2), most of which is a table of colours in two or
/// four bytes or twos of bytes each. All rows have to be full.
std::vector<Shape> profileShapes(const QByteArray &bytes)
{
    constexpr qsizetype kSignature = 36;
    std::vector<Shape> shapes;
    if (bytes.size() < kLeastProfile || bytes.mid(kSignature, 4) != "acsp") {
        return shapes;
    }
    for (const int components : {1, 2, 4, 8}) {
        const qsizetype samples = bytes.size() / components;
        if (samples * components != bytes.size()) {
            continue;
        }
        qsizetype width = kProfileRow;
        while (width < 4 * kProfileRow && samples % width != 0) {
            ++width;
        }
        shapes.push_back({components, static_cast<int>(samples % width == 0 ? width : samples)});
    }
    return shapes;
}

/// The shapes in which the data of a stream may gain by PNG filters: that of the image whose
/// samples they are, or those of a profile.
std::vector<Shape> shapesOf(QPDFObjectHandle stream, const QByteArray &plain)
{
    if (!hasName(stream.getDict(), "/Subtype", "/Image")) {
        return profileShapes(plain);
    }
    const std::optional<ImageFacts> facts = imageFacts(stream);
    if (!facts) {
        return {};
    }
    const int components = facts->palette.empty() ? facts->components : 1;
    return plain.size() == qsizetype{facts->width} * facts->height * components
               ? std::vector<Shape>{{components, facts->width}}
               : std::vector<Shape>{};
}

} // namespace

QPDFObjectHandle filterParameters(int components, int width)
{
    QPDFObjectHandle parameters = QPDFObjectHandle::newDictionary();
    parameters.replaceKey("/Predictor", QPDFObjectHandle::newInteger(15));
    parameters.replaceKey("/Colors", QPDFObjectHandle::newInteger(components));
    parameters.replaceKey("/Columns", QPDFObjectHandle::newInteger(width));
    return parameters;
}

Effort StreamPacker::effortFor(qsizetype plain, qsizetype packed)
{
    m_done += plain;
    if (plain <= kBestStream && m_done <= kBestBytes && plain / kSlowRatio < packed) {
        return Effort::Best;
    }
    return Effort::Good;
}

/// The smallest form of data that took `before` bytes.
StreamPacker::Packed StreamPacker::packed(QPDFObjectHandle stream, const QByteArray &plain,
                                          qsizetype before, QPDFObjectHandle parameters)
{
    Packed best{deflated(plain, effortFor(plain.size(), before), m_cancel), parameters};
    const bool mayGain = !hasPredictor(parameters) && plain.size() / kPoorRatio < best.data.size();
    for (const Shape &shape : mayGain ? shapesOf(stream, plain) : std::vector<Shape>{}) {
        const QByteArray rows = filteredRows(plain, shape.components, shape.width, m_cancel);
        QByteArray filtered = deflated(rows, effortFor(rows.size(), best.data.size()), m_cancel);
        if (!filtered.isEmpty() && filtered.size() + kParameterBytes < best.data.size()) {
            best = {filtered, filterParameters(shape.components, shape.width)};
        }
    }
    return best;
}

/// The smaller one of two forms: that which was found with the predictor of the stream, and one
/// with another predictor or none.
StreamPacker::Packed StreamPacker::withoutPredictor(QPDFObjectHandle stream, Packed found)
{
    const QByteArray plain = decoded(stream);
    if (plain.isEmpty() || plain.size() > kMaxPackedBytes) {
        return found;
    }
    Packed other = packed(stream, plain, found.data.size(), QPDFObjectHandle::newNull());
    return !other.data.isEmpty() && other.data.size() < found.data.size() ? other : found;
}

std::optional<StreamPacker::Packed> StreamPacker::smaller(QPDFObjectHandle stream, bool isFlate,
                                                          const QByteArray &raw)
{
    try {
        if (isFlate) {
            const std::optional<QByteArray> plain = inflated(raw);
            const QPDFObjectHandle parameters = lastParameters(stream);
            if (!plain) {
                return std::nullopt;
            }
            Packed found = packed(stream, *plain, raw.size(), parameters);
            return hasPredictor(parameters) ? withoutPredictor(stream, std::move(found)) : found;
        }
        const QByteArray plain = decoded(stream);
        return plain.size() <= kMaxPackedBytes
                   ? std::optional(packed(stream, plain, raw.size(), QPDFObjectHandle::newNull()))
                   : std::nullopt;
    } catch (const std::exception &) {
        // It stays as damaged as it is.
        return std::nullopt;
    }
}

/// Takes away what a JPEG picture was packed in beside, if that is smaller.
void StreamPacker::unwrapJpeg(QPDFObjectHandle stream)
{
    QByteArray jpeg;
    try {
        jpeg = dataOfLastFilter(stream);
        if (jpeg.isEmpty() || jpeg.size() >= rawData(stream).size()) {
            return;
        }
    } catch (const QPDFExc &) {
        // It stays as damaged as it is.
        return;
    }
    m_spool.replace(stream, jpeg, "/DCTDecode", lastParameters(stream));
}

void StreamPacker::pack(QPDFObjectHandle stream)
{
    QPDFObjectHandle dict = stream.getDict();
    const std::optional<std::vector<std::string>> filters = filtersOf(stream);
    if (!filters || dict.hasKey("/F") || dict.hasKey("/FDecodeParms")) {
        return;
    }
    if (filters->size() > 1 && endsInJpeg(*filters)) {
        unwrapJpeg(stream);
    }
    if (!areGeneral(*filters)) {
        return;
    }
    QByteArray raw;
    try {
        raw = rawData(stream);
    } catch (const std::exception &) {
        return;
    }
    if (raw.isEmpty() || raw.size() > kMaxPackedBytes) {
        return;
    }
    const std::optional<Packed> found = smaller(stream, isFlateAlone(*filters), raw);
    const qsizetype cost = filters->empty() ? kFilterBytes : 0;
    if (found && !found->data.isEmpty() && found->data.size() + cost < raw.size()) {
        m_spool.replace(stream, found->data, "/FlateDecode", found->parameters);
    }
}

} // namespace pdfcore
