// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QTemporaryFile>

#include <map>
#include <memory>
#include <utility>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Keeps new data of streams in a temporary file until they are written, so that memory does not
/// grow with them. The document holds it by a shared pointer.
class StreamSpool final : public QPDFObjectHandle::StreamDataProvider,
                          public std::enable_shared_from_this<StreamSpool>
{
public:
    StreamSpool();
    ~StreamSpool() override;

    /// Gives a stream other data, which stand in the file as they are. Throws std::runtime_error
    /// when there is no room for them.
    ///
    /// @param parameters  Of the only filter; null for none.
    void replace(QPDFObjectHandle stream, const QByteArray &data, const char *filter,
                 QPDFObjectHandle parameters);

    void provideStreamData(const QPDFObjGen &object, Pipeline *pipeline) override;

private:
    QTemporaryFile m_file;
    qint64 m_end = 0;
    std::map<QPDFObjGen, std::pair<qint64, qint64>> m_places; ///< Offset and length.
};

} // namespace pdfcore
