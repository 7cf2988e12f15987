// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/picture_file.h"

#include "pdfcore/src/operations/jpeg_encoder.h"
#include "pdfcore/src/operations/png_encoder.h"

#include <QByteArrayView>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace pdfcore {

namespace {

/// Rows between two looks at the flag.
constexpr int kRowsPerCheck = 64;

constexpr QCryptographicHash::Algorithm kChecksum = QCryptographicHash::Sha1;

EngineError writeError(const QString &reason)
{
    return {PdfBackendError::WriteFailed, reason};
}

} // namespace

PictureFile::PictureFile(const PdfPictureTarget &target)
    : m_format(target.format)
    , m_file(QDir(target.folder).filePath(target.baseName), AtomicFile::Flush::Caller,
             AtomicFile::Existing::Keep)
    , m_written(std::in_place, kChecksum)
{}

EngineError PictureFile::open()
{
    QString reason;
    return m_file.open(&reason) ? EngineError{} : writeError(reason);
}

void PictureFile::begin(const PictureForm &form)
{
    const auto sink = [this](const char *data, qsizetype size) { return write(data, size); };
    m_encoder =
        m_format == PdfPictureFormat::Jpeg ? newJpegEncoder(form, sink) : newPngEncoder(form, sink);
}

EngineError PictureFile::addRows(const unsigned char *rows, qsizetype bytesPerRow, int count,
                                 const PdfCancelFlag &cancel)
{
    for (int row = 0; row < count; row += kRowsPerCheck) {
        if (cancel.isSet()) {
            return cancelledError(PdfBackendError::WriteFailed);
        }
        if (!m_encoder->addRows(rows + row * bytesPerRow, bytesPerRow,
                                std::min(kRowsPerCheck, count - row))) {
            return writeError(m_encoder->reason());
        }
    }
    return {};
}

EngineError PictureFile::finish()
{
    const bool isFinished = m_encoder->finish();
    const EngineError error = isFinished ? EngineError{} : writeError(m_encoder->reason());
    m_encoder.reset();
    return error.isError() ? error : close();
}

EngineError PictureFile::writeWhole(const QByteArray &content)
{
    if (!write(content.constData(), content.size())) {
        return writeError(m_file.device().errorString());
    }
    return close();
}

bool PictureFile::write(const char *data, qsizetype size)
{
    m_written->addData(QByteArrayView(data, size));
    return m_file.device().write(data, size) == size;
}

EngineError PictureFile::close()
{
    QString reason;
    if (!m_file.finishWriting(&reason)) {
        return writeError(reason);
    }
    return readBack();
}

EngineError PictureFile::readBack()
{
    QFile written(m_file.temporaryPath());
    QCryptographicHash found(kChecksum);
    const bool isRead = written.open(QIODevice::ReadOnly) && found.addData(&written);
    const bool isSame = isRead && found.result() == m_written->result();
    m_written.reset();
    return isSame ? EngineError{}
                  : writeError(QStringLiteral("The picture reads otherwise than it was written."));
}

} // namespace pdfcore
