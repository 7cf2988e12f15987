// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <qpdf/InputSource.hh>
#include <qpdf/Pipeline.hh>

#include <QDeadlineTimer>
#include <QFile>
#include <QIODevice>
#include <QString>

#include <atomic>
#include <string>
#include <vector>

class QPDFWriter;

namespace pdfcore {

/// Lets QPDF read a file through QFile, so that any path that Qt can open works.
///
/// QPDF's own FileInputSource opens by fopen(), which does not take long paths on Windows.
///
/// Read errors throw std::runtime_error, which is what QPDF expects.
class QFileInput final : public InputSource
{
public:
    /// Throws std::runtime_error when the file cannot be opened. Reading fails after `deadline`.
    explicit QFileInput(const QString &path,
                        QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever));

    qpdf_offset_t findAndSkipNextEOL() override;
    const std::string &getName() const override { return m_name; }
    qpdf_offset_t tell() override { return m_position; }
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override { seek(0, SEEK_SET); }
    size_t read(char *target, size_t length) override;
    void unreadCh(char ch) override;

private:
    bool fill();

    QFile m_file;
    std::string m_name;
    QDeadlineTimer m_deadline;
    std::vector<char> m_chunk;
    std::size_t m_filled = 0; ///< Bytes of the chunk that were read.
    std::size_t m_step = 0;   ///< Bytes that were asked for last.
    qpdf_offset_t m_chunkStart = 0;
    qpdf_offset_t m_position = 0;
};

/// Lets QPDF write to a QIODevice.
///
/// A write that fails does not throw: QPDF flushes its filters while other exceptions pass, and
/// from destructors, where one more would end the program. What comes after the failure is dropped;
/// writeQpdf() ends at it.
class QDeviceOutput final : public Pipeline
{
public:
    /// Writing fails once `cancelled` is set, which outlives this object and may be null.
    explicit QDeviceOutput(QIODevice &device, const std::atomic<bool> *cancelled = nullptr);

    void write(const unsigned char *data, size_t length) override;
    void finish() override {}

    /// True once the device refused data or a write was cancelled.
    [[nodiscard]] bool hasFailed() const { return m_failed; }

    /// Like hasFailed(), and a cancel since the last write counts.
    [[nodiscard]] bool hasToStop();

    /// Fails for a reason that is not the device's.
    void fail(const QString &reason);

    /// Why it failed, in the device's words.
    [[nodiscard]] const QString &reason() const { return m_reason; }

private:
    QIODevice &m_device;
    const std::atomic<bool> *m_cancelled;
    bool m_failed = false;
    QString m_reason;
};

/// Writes what `writer` was set up for into `output`. Throws std::runtime_error with the reason of
/// the output as soon as that fails (after a hundredth of the objects, at the latest), and what
/// QPDF throws.
void writeQpdf(QPDFWriter &writer, QDeviceOutput &output);

} // namespace pdfcore
