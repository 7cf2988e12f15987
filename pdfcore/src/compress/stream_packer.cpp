// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/stream_packer.h"

#include "pdfcore/src/compress/deflate.h"
#include "pdfcore/src/compress/image_facts.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFExc.hh>

#include <exception>
#include <optional>

namespace pdfcore {

namespace {

/// Bytes of a dictionary that naming a filter takes.
constexpr qsizetype kFilterBytes = 20;
/// How many times smaller data are without PNG filters when these do not help any more.
constexpr qsizetype kPoorRatio = 50;

/// Data with the parameters of Flate that they need.
struct Packed
{
    QByteArray data;
    QPDFObjectHandle parameters = QPDFObjectHandle::newNull();
};

bool isFlate(const std::vector<std::string> &filters)
{
    return filters.size() == 1 && (filters.front() == "/FlateDecode" || filters.front() == "/Fl");
}

QByteArray decoded(QPDFObjectHandle stream)
{
    const std::shared_ptr<Buffer> data = stream.getStreamData(qpdf_dl_generalized);
    return QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                      static_cast<qsizetype>(data->getSize()));
}

int wholeNumber(QPDFObjectHandle value)
{
    return value.isInteger() ? value.getIntValueAsInt() : 0;
}

QPDFObjectHandle predictorParameters(int components, int width)
{
    QPDFObjectHandle parameters = QPDFObjectHandle::newDictionary();
    parameters.replaceKey("/Predictor", QPDFObjectHandle::newInteger(15));
    parameters.replaceKey("/Colors", QPDFObjectHandle::newInteger(components));
    parameters.replaceKey("/Columns", QPDFObjectHandle::newInteger(width));
    return parameters;
}

/// Whether it is worth trying PNG filters: they do nothing for what is mostly the same colour.
bool mayGain(const QByteArray &plain, const QByteArray &packed)
{
    return plain.size() / kPoorRatio < packed.size();
}

/// The samples of an image with a PNG filter for each row; nothing for anything else.
std::optional<Packed> packedRows(QPDFObjectHandle stream, const QByteArray &samples)
{
    const std::optional<ImageFacts> facts =
        hasName(stream.getDict(), "/Subtype", "/Image") ? imageFacts(stream) : std::nullopt;
    if (!facts || samples.size() != qsizetype{facts->width} * facts->height * facts->components) {
        return std::nullopt;
    }
    return Packed{deflated(filteredRows(samples, facts->components, facts->width)),
                  predictorParameters(facts->components, facts->width)};
}

/// The smallest form of a stream that has one already, by Flate.
std::optional<Packed> repacked(QPDFObjectHandle stream, const QByteArray &raw)
{
    const std::optional<QByteArray> plain = inflated(raw);
    if (!plain) {
        return std::nullopt;
    }
    QPDFObjectHandle parameters = lastParameters(stream);
    Packed best{deflated(*plain), parameters};
    if (wholeNumber(entryOf(parameters, "/Predictor")) <= 1 && mayGain(*plain, best.data)) {
        const std::optional<Packed> rows = packedRows(stream, *plain);
        if (rows && rows->data.size() + kFilterBytes < best.data.size()) {
            best = *rows;
        }
    }
    return best;
}

/// The smallest form of a stream that is not compressed, or otherwise.
std::optional<Packed> newlyPacked(QPDFObjectHandle stream)
{
    const QByteArray plain = decoded(stream);
    if (plain.size() > kMaxPackedBytes) {
        return std::nullopt;
    }
    Packed best{deflated(plain)};
    const std::optional<Packed> rows =
        mayGain(plain, best.data) ? packedRows(stream, plain) : std::nullopt;
    return rows && rows->data.size() + kFilterBytes < best.data.size() ? rows : best;
}

/// Takes away what a JPEG picture was packed in beside, if that is smaller.
void unwrapJpeg(QPDFObjectHandle stream, StreamSpool &spool)
{
    try {
        const QByteArray jpeg = dataOfLastFilter(stream);
        if (!jpeg.isEmpty() && jpeg.size() < rawData(stream).size()) {
            spool.replace(stream, jpeg, "/DCTDecode", lastParameters(stream));
        }
    } catch (const QPDFExc &) {
        // It stays as damaged as it is.
        return;
    }
}

std::optional<Packed> packed(QPDFObjectHandle stream, const std::vector<std::string> &filters,
                             const QByteArray &raw)
{
    try {
        return isFlate(filters) ? repacked(stream, raw) : newlyPacked(stream);
    } catch (const std::exception &) {
        // It stays as damaged as it is.
        return std::nullopt;
    }
}

} // namespace

void packStream(QPDFObjectHandle stream, StreamSpool &spool)
{
    QPDFObjectHandle dict = stream.getDict();
    const std::optional<std::vector<std::string>> filters = filtersOf(stream);
    if (!filters || dict.hasKey("/F") || dict.hasKey("/FDecodeParms")) {
        return;
    }
    if (filters->size() > 1 && endsInJpeg(*filters)) {
        unwrapJpeg(stream, spool);
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
    std::optional<Packed> smaller = packed(stream, *filters, raw);
    const qsizetype cost = filters->empty() ? kFilterBytes : 0;
    if (smaller && !smaller->data.isEmpty() && smaller->data.size() + cost < raw.size()) {
        spool.replace(stream, smaller->data, "/FlateDecode", smaller->parameters);
    }
}

} // namespace pdfcore
