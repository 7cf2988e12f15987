// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/compress/deflate.h"
#include "pdfcore/src/compress/stream_spool.h"

#include <QByteArray>

#include <optional>
#include <utility>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// The parameters of Flate for rows that come out of filteredRows().
QPDFObjectHandle filterParameters(int components, int width);

/// Compresses the data of streams anew, without loss, where that makes them smaller. Streams that
/// cannot be read to their end, are encrypted by themselves, or compressed in a way that only
/// pictures are, stay as they are. The more there is of a document, the less hard it tries.
class StreamPacker
{
public:
    StreamPacker(StreamSpool &spool, PdfCancelFlag cancel)
        : m_spool(spool)
        , m_cancel(std::move(cancel))
    {}

    /// Throws when there is no room for new data.
    void pack(QPDFObjectHandle stream);

private:
    /// Data with the parameters of Flate that they need.
    struct Form
    {
        QByteArray data;
        QPDFObjectHandle parameters = QPDFObjectHandle::newNull();
    };

    void unwrapJpeg(QPDFObjectHandle stream);
    Effort effortFor(qsizetype plain, qsizetype packed);
    [[nodiscard]] std::vector<Form> formsOf(QPDFObjectHandle stream, bool isFlate,
                                            const QByteArray &raw) const;
    Form packed(std::vector<Form> forms, qsizetype before);
    std::optional<Form> smaller(QPDFObjectHandle stream, bool isFlate, const QByteArray &raw);

    StreamSpool &m_spool;
    PdfCancelFlag m_cancel;
    qsizetype m_done = 0; ///< Bytes that were compressed.
};

} // namespace pdfcore
