// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_compression.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>

#include <qpdf/QPDF.hh>

/// Documents with pictures, and what becomes of them when they are made smaller.
namespace CompressionCase {

/// Samples of a picture like a photograph, `components` bytes each.
QByteArray photo(QSize size, int components);

/// The same as a JPEG picture in colour, as small as it gets if it is packed.
QByteArray jpegPhoto(QSize size, int quality, bool isPacked = false);

/// Bytes in the form of Flate.
QByteArray flate(const QByteArray &bytes);

/// The body of an image object. `entries` name at least its colour space.
QByteArray image(QSize size, const QByteArray &entries, const QByteArray &data);

/// One in JPEG, in colour.
QByteArray jpegImage(QSize size, int quality = 95, const QByteArray &entries = {});

/// One of samples of 8 bits in the form of Flate; the entries name the colour space.
QByteArray sampledImage(QSize size, const QByteArray &entries, const QByteArray &samples);

/// A page with one image, object 5, called /X, in a square of `points`, after `more`.
QByteArray pageWith(const QByteArray &imageBody, double points = 72,
                    const QList<QByteArray> &more = {});

/// A document that was made smaller.
class Result
{
public:
    Result(const QByteArray &source, PdfCompressionLevel level = PdfCompressionLevel::Basic);

    [[nodiscard]] const PdfOperationOutcome &outcome() const { return m_outcome; }
    [[nodiscard]] QByteArray bytes() const;
    [[nodiscard]] QString path() const { return m_folder.path(QStringLiteral("result.pdf")); }
    [[nodiscard]] const EngineCalls::Folder &folder() const { return m_folder; }
    /// Whether the file is the source, byte for byte.
    [[nodiscard]] bool isCopy() const { return bytes() == m_source; }
    QPDF &pdf();
    /// The first page.
    QPDFObjectHandle page();
    /// All image objects, in the order of their numbers.
    std::vector<QPDFObjectHandle> images();
    /// The first image that is no mask of another one.
    QPDFObjectHandle image();
    QSize imageSize();
    /// The largest difference of the means of small areas, of what the page showed and shows.
    int difference() const;

private:
    EngineCalls::Folder m_folder;
    QByteArray m_source;
    PdfOperationOutcome m_outcome;
    std::unique_ptr<QPDF> m_pdf;
};

/// The size that an image says to have.
QSize sizeOf(QPDFObjectHandle image);

/// The samples of an image, all filters undone but that of JPEG, which QImage undoes.
QByteArray samplesOf(QPDFObjectHandle image);

/// The name of the only filter of a stream.
QByteArray filterOf(QPDFObjectHandle stream);

} // namespace CompressionCase
