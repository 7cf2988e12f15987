// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_picture_import.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

/// A file that was made of pictures, for looking at its objects.
class ImportedFile
{
public:
    explicit ImportedFile(const QString &path);

    [[nodiscard]] QPDF &document() { return *m_document; }
    [[nodiscard]] const std::vector<QPDFObjectHandle> &pages() const { return m_pages; }
    /// The image of a page.
    [[nodiscard]] QPDFObjectHandle image(std::size_t page = 0) const;
    /// The operators of a page.
    [[nodiscard]] QByteArray content(std::size_t page = 0) const;
    /// How many images there are, without masks.
    [[nodiscard]] int imageCount();
    /// The data of a stream as they are in the file.
    static QByteArray stored(QPDFObjectHandle stream);
    /// The same, decompressed.
    static QByteArray decoded(QPDFObjectHandle stream);
    /// An object as the file spells it.
    static QByteArray text(QPDFObjectHandle object);

private:
    QByteArray m_content; ///< What the document reads from.
    std::unique_ptr<QPDF> m_document;
    std::vector<QPDFObjectHandle> m_pages;
};

/// Makes a file of pictures in the place of whatever is there.
PdfOperationOutcome importPictures(const QStringList &pictures, const QString &target,
                                   const PdfPictureImportOptions &options = {},
                                   const PdfCancelFlag &cancel = {});
