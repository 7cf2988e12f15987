// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "pdfcore/pdf_picture_import.h"
#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/operations/imported_picture.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

class Pipeline;

namespace pdfcore {

/// A document whose pages are pictures, which stay in their files until QPDF writes it.
///
/// It has to outlive the writing, which ends with an exception if a picture cannot be read then;
/// see failure(). For one thread.
class ImportDocument final
{
public:
    ImportDocument(const PdfPictureImportOptions &options, const PdfCancelFlag &cancel);
    ImportDocument(const ImportDocument &) = delete;
    ImportDocument &operator=(const ImportDocument &) = delete;

    /// Adds a page with the picture in a file.
    PdfOperationOutcome addPage(const QString &path);
    /// The document with all pages that were added.
    QPDF &finish();
    /// What went wrong with a picture while the document was written.
    [[nodiscard]] const PdfOperationOutcome &failure() const { return m_failure; }
    /// Whether all pictures are still those that pages were made of.
    [[nodiscard]] PdfOperationOutcome checkUnchanged() const;
    [[nodiscard]] qsizetype pageCount() const { return static_cast<qsizetype>(m_pages.size()); }
    /// Bytes of the files that hold its pictures.
    [[nodiscard]] qint64 sourceBytes() const { return m_sourceBytes; }

private:
    /// A picture that is in the document already.
    struct Placed
    {
        FileIdentity file;
        QByteArray ends;   ///< Digest of its first and last bytes, made for files of equal size.
        QByteArray digest; ///< Of all its bytes, made for files of equal ends.
        QPDFObjectHandle image;
        QSize pixels;
        QImageIOHandler::Transformations orientation;
    };
    using Part = void (*)(const QString &path, PictureCoding coding, const ByteSink &sink,
                          const PdfCancelFlag &cancel);

    Placed &place(const QString &path);
    Placed *findEqual(Placed &picture);
    QPDFObjectHandle newImage(const QString &path, const ImportedPicture &picture);
    QPDFObjectHandle newStream(const QString &path, PictureCoding coding, Part part,
                               QPDFObjectHandle dictionary);
    QPDFObjectHandle colourSpace(const QString &path, const ImportedPicture &picture);
    QPDFObjectHandle profileStream(const QString &path, const ImportedPicture &picture);
    QPDFObjectHandle contentFor(const Placed &picture);
    void provide(const QString &path, const std::function<void(const ByteSink &sink)> &write,
                 Pipeline &pipeline);

    PdfPictureImportOptions m_options;
    PdfCancelFlag m_cancel;
    QPDF m_document;
    std::vector<QPDFObjectHandle> m_pages;
    std::vector<Placed> m_pictures;
    QHash<QString, std::size_t> m_byPath;
    QMultiHash<qint64, std::size_t> m_bySize;
    QHash<QByteArray, QPDFObjectHandle> m_profiles; ///< By digest; null where it is of no use.
    QHash<QByteArray, QPDFObjectHandle> m_contents;
    PdfOperationOutcome m_failure;
    qint64 m_sourceBytes = 0;
};

} // namespace pdfcore
