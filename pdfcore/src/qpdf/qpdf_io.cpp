// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/qpdf_io.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <qpdf/QPDFWriter.hh>

namespace pdfcore {

namespace {

/// Bytes read from the file at a time, at most.
constexpr std::size_t kChunkBytes = std::size_t{64} << 10;

/// Bytes read after a jump; what is read on from there comes in steps that double.
constexpr std::size_t kJumpBytes = std::size_t{4} << 10;

bool isEndOfLine(char ch)
{
    return ch == '\n' || ch == '\r';
}

} // namespace

QFileInput::QFileInput(const QString &path, QDeadlineTimer deadline)
    : m_file(path)
    , m_name(path.toStdString())
    , m_deadline(deadline)
{
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw std::runtime_error(m_file.errorString().toStdString());
    }
    m_chunk.resize(kChunkBytes);
}

bool QFileInput::fill()
{
    const qpdf_offset_t end = m_chunkStart + static_cast<qpdf_offset_t>(m_filled);
    if (m_position >= m_chunkStart && m_position < end) {
        return true;
    }
    if (m_deadline.hasExpired()) {
        throw std::runtime_error("it takes too long");
    }
    m_step = m_position == end ? std::clamp(2 * m_step, kJumpBytes, kChunkBytes) : kJumpBytes;
    qint64 got = -1;
    if (m_file.seek(m_position)) {
        got = m_file.read(m_chunk.data(), static_cast<qint64>(m_step));
    }
    m_chunkStart = m_position;
    m_filled = static_cast<std::size_t>(std::max<qint64>(got, 0));
    if (got < 0) {
        throw std::runtime_error("the file cannot be read: " + m_file.errorString().toStdString());
    }
    return got > 0;
}

qpdf_offset_t QFileInput::findAndSkipNextEOL()
{
    while (fill()) {
        const char *begin = m_chunk.data() + (m_position - m_chunkStart);
        const char *end = m_chunk.data() + m_filled;
        const char *found = std::find_if(begin, end, isEndOfLine);
        m_position += found - begin;
        if (found == end) {
            continue;
        }
        const qpdf_offset_t lineEnd = m_position;
        while (fill() &&
               isEndOfLine(m_chunk[static_cast<std::size_t>(m_position - m_chunkStart)])) {
            ++m_position;
        }
        return lineEnd;
    }
    return m_position;
}

void QFileInput::seek(qpdf_offset_t offset, int whence)
{
    qpdf_offset_t target = offset;
    if (whence == SEEK_CUR) {
        target += m_position;
    } else if (whence == SEEK_END) {
        target += m_file.size();
    }
    if (target < 0) {
        throw std::runtime_error("seek before the beginning of the file");
    }
    m_position = target;
}

size_t QFileInput::read(char *target, size_t length)
{
    setLastOffset(m_position);
    std::size_t done = 0;
    while (done < length && fill()) {
        const auto start = static_cast<std::size_t>(m_position - m_chunkStart);
        const std::size_t part = std::min(length - done, m_filled - start);
        std::memcpy(target + done, m_chunk.data() + start, part);
        done += part;
        m_position += static_cast<qpdf_offset_t>(part);
    }
    return done;
}

void QFileInput::unreadCh(char /*ch*/)
{
    if (m_position > 0) {
        --m_position;
    }
}

QDeviceOutput::QDeviceOutput(QIODevice &device, const std::atomic<bool> *cancelled)
    : Pipeline("output", nullptr)
    , m_device(device)
    , m_cancelled(cancelled)
{}

void QDeviceOutput::write(const unsigned char *data, size_t length)
{
    if (hasToStop()) {
        return;
    }
    // A device that has room for a part only tells why when it is given the rest.
    const auto wanted = static_cast<qint64>(length);
    for (qint64 done = 0; done < wanted;) {
        const qint64 taken =
            m_device.write(reinterpret_cast<const char *>(data) + done, wanted - done);
        if (taken <= 0) {
            fail(m_device.errorString());
            return;
        }
        done += taken;
    }
}

bool QDeviceOutput::hasToStop()
{
    if (!m_failed && m_cancelled != nullptr && *m_cancelled) {
        fail(QStringLiteral("It was cancelled."));
    }
    return m_failed;
}

void QDeviceOutput::fail(const QString &reason)
{
    m_failed = true;
    m_reason = reason;
}

void writeQpdf(QPDFWriter &writer, QDeviceOutput &output)
{
    const auto stopAtFailure = [&output](int /*percentage*/ = 0) {
        if (output.hasToStop()) {
            throw std::runtime_error(output.reason().toStdString());
        }
    };
    writer.setOutputPipeline(&output);
    writer.registerProgressReporter(
        std::make_shared<QPDFWriter::FunctionProgressReporter>(stopAtFailure));
    writer.write();
    stopAtFailure();
}

} // namespace pdfcore
