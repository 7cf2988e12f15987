// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/operations/imported_file.h"

#include "tests/pdfcore/engine_calls.h"

#include <qpdf/Buffer.hh>

namespace {

QByteArray bytesOf(const std::shared_ptr<Buffer> &buffer)
{
    return QByteArray(reinterpret_cast<const char *>(buffer->getBuffer()),
                      static_cast<qsizetype>(buffer->getSize()));
}

} // namespace

ImportedFile::ImportedFile(const QString &path)
    : m_content(EngineCalls::contentOf(path))
    , m_document(std::make_unique<QPDF>())
{
    m_document->setAttemptRecovery(false);
    m_document->processMemoryFile("imported", m_content.constData(),
                                  static_cast<std::size_t>(m_content.size()));
    m_pages = m_document->getAllPages();
}

QPDFObjectHandle ImportedFile::image(std::size_t page) const
{
    QPDFObjectHandle object = m_pages.at(page);
    return object.getKey("/Resources").getKey("/XObject").getKey("/Im0");
}

QByteArray ImportedFile::content(std::size_t page) const
{
    QPDFObjectHandle object = m_pages.at(page);
    return decoded(object.getKey("/Contents"));
}

int ImportedFile::imageCount()
{
    int count = 0;
    int masks = 0;
    for (QPDFObjectHandle &object : m_document->getAllObjects()) {
        if (object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
            ++count;
            masks += object.getDict().hasKey("/SMask") ? 1 : 0;
        }
    }
    return count - masks;
}

QByteArray ImportedFile::stored(QPDFObjectHandle stream)
{
    return bytesOf(stream.getRawStreamData());
}

QByteArray ImportedFile::decoded(QPDFObjectHandle stream)
{
    return bytesOf(stream.getStreamData());
}

QByteArray ImportedFile::text(QPDFObjectHandle object)
{
    return QByteArray::fromStdString(object.unparseResolved());
}

PdfOperationOutcome importPictures(const QStringList &pictures, const QString &target,
                                   const PdfPictureImportOptions &options,
                                   const PdfCancelFlag &cancel)
{
    return PdfPictureImport::toDocument(pictures, options, PdfPlacement::replacing(target), cancel);
}
