// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/stream_packer.h"

#include "pdfcore/src/compress/image_facts.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Pl_Function.hh>
#include <qpdf/QPDFExc.hh>

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace pdfcore {

namespace {

/// Bytes of a dictionary that naming a filter takes, and the parameters of one.
constexpr qsizetype kFilterBytes = 20;
constexpr qsizetype kParameterBytes = 60;
/// Bytes of a colour profile that is more than a few curves.
constexpr qsizetype kLeastProfile = qsizetype{16} * 1024;
/// Bytes from which only the form of data that promises most is compressed with all effort.
constexpr qsizetype kTryAll = qsizetype{64} * 1024;
/// Bytes that filters may give which QPDF undoes.
constexpr qsizetype kMaxDecoded = qsizetype{64} * 1024 * 1024;
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

/// Throws when it is too much: a few kilobytes can stand for any amount.
QByteArray decoded(QPDFObjectHandle stream)
{
    QByteArray data;
    Pl_Function append("data", nullptr, [&data](const unsigned char *bytes, size_t length) {
        if (length > static_cast<size_t>(kMaxDecoded - data.size())) {
            throw std::length_error("too much data");
        }
        data.append(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(length));
    });
    bool isDecoded = false;
    if (!stream.pipeStreamData(&append, &isDecoded, 0, qpdf_dl_specialized, true) || !isDecoded) {
        throw std::runtime_error("the data cannot be decoded");
    }
    return data;
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

/// All forms in which the data of a stream, which are `raw` in its file, may be compressed.
std::vector<StreamPacker::Form> StreamPacker::formsOf(QPDFObjectHandle stream, bool isFlate,
                                                      const QByteArray &raw) const
{
    std::vector<Form> forms;
    QByteArray plain;
    const QPDFObjectHandle parameters = lastParameters(stream);
    if (isFlate) {
        const std::optional<QByteArray> data = inflated(raw);
        if (!data) {
            return forms;
        }
        plain = *data;
        forms.push_back({plain, parameters});
    }
    if (!isFlate || hasPredictor(parameters)) {
        plain = decoded(stream);
        forms.push_back({plain, QPDFObjectHandle::newNull()});
    }
    const bool mayGain = plain.size() / kPoorRatio < raw.size();
    for (const Shape &shape : mayGain ? shapesOf(stream, plain) : std::vector<Shape>{}) {
        forms.push_back({filteredRows(plain, shape.components, shape.width, m_cancel),
                         filterParameters(shape.components, shape.width)});
    }
    return forms;
}

/// The form that takes the least, or that promises so where there is much to try.
StreamPacker::Form StreamPacker::packed(std::vector<Form> forms, qsizetype before)
{
    const auto costOf = [](const QByteArray &data, QPDFObjectHandle parameters) {
        return data.size() + (parameters.isNull() ? 0 : kParameterBytes);
    };
    if (forms.size() > 1 && forms.front().data.size() > kTryAll) {
        std::vector<qsizetype> costs;
        costs.reserve(forms.size());
        for (const Form &form : forms) {
            costs.push_back(costOf(deflated(form.data, Effort::Least, m_cancel), form.parameters));
        }
        const auto least = std::min_element(costs.begin(), costs.end()) - costs.begin();
        forms = {forms[static_cast<std::size_t>(least)]};
    }
    Form best;
    for (const Form &form : forms) {
        const QByteArray data = deflated(form.data, effortFor(form.data.size(), before), m_cancel);
        const bool isFirst = best.data.isEmpty();
        if (!data.isEmpty() &&
            (isFirst || costOf(data, form.parameters) < costOf(best.data, best.parameters))) {
            best = {data, form.parameters};
        }
    }
    return best;
}

std::optional<StreamPacker::Form> StreamPacker::smaller(QPDFObjectHandle stream, bool isFlate,
                                                        const QByteArray &raw)
{
    try {
        std::vector<Form> forms = formsOf(stream, isFlate, raw);
        return forms.empty() ? std::nullopt : std::optional(packed(std::move(forms), raw.size()));
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
    const std::optional<Form> found = smaller(stream, isFlateAlone(*filters), raw);
    const qsizetype cost = filters->empty() ? kFilterBytes : 0;
    if (found && !found->data.isEmpty() && found->data.size() + cost < raw.size()) {
        m_spool.replace(stream, found->data, "/FlateDecode", found->parameters);
    }
}

} // namespace pdfcore
