// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/stream_spool.h"

#include "pdfcore/src/base/engine_error.h"

#include <qpdf/Pipeline.hh>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace pdfcore {

namespace {

constexpr qint64 kChunk = qint64{1} << 18;

} // namespace

StreamSpool::StreamSpool() = default;

StreamSpool::~StreamSpool() = default;

void StreamSpool::replace(QPDFObjectHandle stream, const QByteArray &data, const char *filter,
                          QPDFObjectHandle parameters)
{
    if ((!m_file.isOpen() && !m_file.open()) || !m_file.seek(m_end) ||
        m_file.write(data) != data.size() || !m_file.flush()) {
        throw WriteError(m_file.errorString());
    }
    m_places[stream.getObjGen()] = {m_end, data.size()};
    m_end += data.size();
    stream.replaceStreamData(shared_from_this(), QPDFObjectHandle::newName(filter), parameters);
    // QPDF would write metadata without a filter.
    stream.setFilterOnWrite(false);
}

void StreamSpool::provideStreamData(const QPDFObjGen &object, Pipeline *pipeline)
{
    const auto found = m_places.find(object);
    if (found == m_places.end() || !m_file.seek(found->second.first)) {
        throw std::runtime_error("new data of a stream are gone");
    }
    qint64 left = found->second.second;
    while (left > 0) {
        const QByteArray chunk = m_file.read(std::min(left, kChunk));
        if (chunk.isEmpty()) {
            throw std::runtime_error(m_file.errorString().toStdString());
        }
        pipeline->write(reinterpret_cast<const unsigned char *>(chunk.constData()),
                        static_cast<std::size_t>(chunk.size()));
        left -= chunk.size();
    }
    pipeline->finish();
}

} // namespace pdfcore
