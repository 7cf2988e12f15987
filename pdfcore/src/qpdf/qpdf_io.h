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

/// Lets QPDF write to a QIODevice; a write that fails throws std::runtime_error.
///
/// Pl_Function would do for the writing alone. QPDF may take the exception for damage of the stream
/// that is being written, so who writes has to ask afterwards.
class QDeviceOutput final : public Pipeline
{
public:
    /// Writing fails once `cancelled` is set, which outlives this object and may be null.
    explicit QDeviceOutput(QIODevice &device, const std::atomic<bool> *cancelled = nullptr);

    void write(const unsigned char *data, size_t length) override;
    void finish() override {}

    /// True once the device refused data.
    [[nodiscard]] bool hasFailed() const { return m_failed; }

private:
    QIODevice &m_device;
    const std::atomic<bool> *m_cancelled;
    bool m_failed = false;
};

} // namespace pdfcore
