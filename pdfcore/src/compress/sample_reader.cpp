// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/sample_reader.h"

#include <qpdf/Pipeline.hh>

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace pdfcore {

namespace {

/// Puts rows together from the pieces that come out of a filter.
class RowPipeline final : public Pipeline
{
public:
    RowPipeline(std::size_t stride, int rows, const PdfCancelFlag &cancel,
                const std::function<void(const std::uint8_t *)> &sink)
        : Pipeline("rows", nullptr)
        , m_stride(stride)
        , m_left(rows)
        , m_cancel(cancel)
        , m_sink(sink)
    {}

    void write(const unsigned char *data, size_t length) override
    {
        if (m_cancel.isSet()) {
            throw std::runtime_error("cancelled");
        }
        while (length > 0 && m_left > 0) {
            if (m_begun.empty() && length >= m_stride) {
                take(data);
                data += m_stride;
                length -= m_stride;
                continue;
            }
            const std::size_t part = std::min(length, m_stride - m_begun.size());
            m_begun.insert(m_begun.end(), data, data + part);
            data += part;
            length -= part;
            if (m_begun.size() == m_stride) {
                take(m_begun.data());
                m_begun.clear();
            }
        }
    }

    void finish() override {}

    [[nodiscard]] bool isComplete() const { return m_left == 0; }

private:
    void take(const std::uint8_t *row)
    {
        m_sink(row);
        --m_left;
    }

    std::size_t m_stride;
    int m_left;
    const PdfCancelFlag &m_cancel;
    const std::function<void(const std::uint8_t *)> &m_sink;
    std::vector<std::uint8_t> m_begun;
};

} // namespace

void ColourCount::addRow(const std::uint8_t *row, int width)
{
    for (int x = 0; x < width && !areMany(); ++x) {
        std::uint32_t colour = 0;
        for (std::size_t k = 0; k < m_components; ++k) {
            colour = colour << 8U | row[k];
        }
        row += m_components;
        if (colour != m_last || m_colours.empty()) {
            m_colours.insert(colour);
            m_last = colour;
        }
    }
}

bool readSamples(QPDFObjectHandle image, std::size_t stride, int rows, const PdfCancelFlag &cancel,
                 const std::function<void(const std::uint8_t *)> &sink)
{
    RowPipeline pipeline(stride, rows, cancel, sink);
    try {
        bool isDecoded = false;
        return image.pipeStreamData(&pipeline, &isDecoded, 0, qpdf_dl_specialized, true) &&
               isDecoded && pipeline.isComplete();
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace pdfcore
