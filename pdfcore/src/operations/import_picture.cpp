// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_picture.h"

#include "pdfcore/src/operations/import_decoded.h"
#include "pdfcore/src/operations/import_jpeg.h"
#include "pdfcore/src/operations/import_png.h"
#include "pdfcore/src/operations/picture_failure.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace pdfcore {

namespace {

constexpr qint64 kCopyBytes = qint64{256} << 10;

const QByteArray kJpegBeginning("\xFF\xD8", 2);
const QByteArray kPngSignature("\x89PNG\r\n\x1A\n", 8);

void open(QFile &file)
{
    const QFileInfo info(file.fileName());
    if (info.exists() && !info.isFile()) {
        // Reading from a pipe could wait for ever.
        throw invalidPicture(QStringLiteral("It is no file."));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
    }
}

void copyFile(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    QFile file(path);
    open(file);
    std::vector<char> buffer(static_cast<std::size_t>(kCopyBytes));
    while (true) {
        throwIfCancelled(cancel);
        const qint64 got = file.read(buffer.data(), kCopyBytes);
        if (got < 0) {
            throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
        }
        if (got == 0) {
            return;
        }
        sink(reinterpret_cast<const unsigned char *>(buffer.data()), static_cast<std::size_t>(got));
    }
}

} // namespace

ImportedPicture inspectPicture(const QString &path, const PdfCancelFlag &cancel)
{
    QFile file(path);
    open(file);
    const QByteArray beginning = file.peek(kPngSignature.size());
    if (beginning.isEmpty()) {
        throw invalidPicture(QStringLiteral("The file is empty."));
    }
    if (beginning == kPngSignature) {
        file.close();
        return inspectPng(path, cancel);
    }
    if (beginning.startsWith(kJpegBeginning)) {
        return inspectJpeg(file);
    }
    file.close();
    return inspectDecoded(path);
}

void writePictureSamples(const QString &path, PictureCoding coding, const ByteSink &sink,
                         const PdfCancelFlag &cancel)
{
    switch (coding) {
    case PictureCoding::Jpeg:
        copyFile(path, sink, cancel);
        break;
    case PictureCoding::PngData:
        writePngData(path, sink, cancel);
        break;
    case PictureCoding::PngRows:
        writePngRows(path, sink, cancel);
        break;
    case PictureCoding::Decoded:
        writeDecodedRows(path, sink, cancel);
        break;
    }
}

void writePictureMask(const QString &path, PictureCoding coding, const ByteSink &sink,
                      const PdfCancelFlag &cancel)
{
    if (coding == PictureCoding::Decoded) {
        writeDecodedMask(path, sink, cancel);
    } else {
        writePngMask(path, sink, cancel);
    }
}

} // namespace pdfcore
