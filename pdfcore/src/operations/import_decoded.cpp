// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_decoded.h"

#include "pdfcore/src/operations/picture_failure.h"
#include "pdfcore/src/operations/png_row_writer.h"

#include <QColorSpace>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <vector>

namespace pdfcore {

namespace {

/// Formats of pictures. Qt's plugins also paint drawings and documents, and some formats contain
/// PNG files, about whose damages it reports on standard error.
bool isPictureFormat(const QByteArray &format)
{
    static const QSet<QByteArray> formats = {"bmp", "gif",  "jp2",  "pbm", "pgm", "ppm",
                                             "tif", "tiff", "webp", "xbm", "xpm"};
    return formats.contains(format);
}

/// The picture in the one of a few forms that has all that is in it: numbers of colours, grey, or
/// RGB with or without alpha, of 8 or 16 bits.
QImage inPlainForm(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
        return image.convertToFormat(QImage::Format_Indexed8);
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
        return image;
    default:
        break;
    }
    const bool isDeep = image.depth() > 32 || image.format() == QImage::Format_BGR30 ||
                        image.format() == QImage::Format_RGB30 ||
                        image.format() == QImage::Format_A2BGR30_Premultiplied ||
                        image.format() == QImage::Format_A2RGB30_Premultiplied;
    if (image.hasAlphaChannel()) {
        return image.convertToFormat(isDeep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888);
    }
    return image.convertToFormat(isDeep ? QImage::Format_RGBX64 : QImage::Format_RGB888);
}

/// What is to be read into, all 0: of a file that ends too early Qt reads some rows only, and
/// leaves the others as the memory happened to be. Null where Qt does not tell what it will need,
/// or would refuse that.
QImage emptyImage(const QImageReader &reader)
{
    const QSize size = reader.size();
    const qint64 pixels = qint64{size.width()} * size.height();
    const qint64 limit = qint64{QImageReader::allocationLimit()} << 20;
    if (size.isEmpty() || reader.imageFormat() == QImage::Format_Invalid || pixels > limit / 8) {
        return {};
    }
    QImage image(size, reader.imageFormat());
    image.fill(0);
    return image;
}

QImage decode(const QString &path, QImageIOHandler::Transformations *orientation = nullptr)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw PictureFailure(PdfOperationError::FileNotFound, file.errorString());
    }
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(false);
    if (!isPictureFormat(reader.format())) {
        throw invalidPicture(QStringLiteral("It is no picture of a known kind."));
    }
    QImage image = emptyImage(reader);
    if (!reader.read(&image) || image.isNull()) {
        throw invalidPicture(reader.errorString());
    }
    if (orientation != nullptr) {
        *orientation = reader.transformation();
    }
    return inPlainForm(image);
}

bool isDeep(const QImage &image)
{
    return image.format() == QImage::Format_Grayscale16 || image.depth() == 64;
}

bool isGrey(const QImage &image)
{
    return image.format() == QImage::Format_Grayscale8 ||
           image.format() == QImage::Format_Grayscale16;
}

int channelsOf(const QImage &image)
{
    return isGrey(image) || image.format() == QImage::Format_Indexed8 ? 1 : 3;
}

/// Appends samples `first` to `last` of each pixel of a row that has `step` per pixel.
template <typename Sample>
void pick(const QImage &image, int y, int step, int first, int last,
          std::vector<unsigned char> &row)
{
    const auto *line = reinterpret_cast<const Sample *>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
        for (int i = first; i <= last; ++i) {
            const Sample sample = qToBigEndian(line[qsizetype{x} * step + i]);
            const auto *bytes = reinterpret_cast<const unsigned char *>(&sample);
            row.insert(row.end(), bytes, bytes + sizeof(Sample));
        }
    }
}

void pick(const QImage &image, int y, int first, int last, std::vector<unsigned char> &row)
{
    row.clear();
    if (isDeep(image)) {
        pick<quint16>(image, y, image.depth() / 16, first, last, row);
    } else {
        pick<quint8>(image, y, image.depth() / 8, first, last, row);
    }
}

/// The opacity of a row; the image has an alpha channel or colours with alpha.
void pickMask(const QImage &image, int y, std::vector<unsigned char> &row)
{
    if (image.format() != QImage::Format_Indexed8) {
        pick(image, y, 3, 3, row);
        return;
    }
    row.clear();
    for (int x = 0; x < image.width(); ++x) {
        row.push_back(static_cast<unsigned char>(qAlpha(image.pixel(x, y))));
    }
}

bool isOpaque(const QImage &image)
{
    if (!image.hasAlphaChannel()) {
        return true;
    }
    std::vector<unsigned char> row;
    for (int y = 0; y < image.height(); ++y) {
        pickMask(image, y, row);
        if (std::any_of(row.begin(), row.end(), [](unsigned char byte) { return byte != 0xFF; })) {
            return false;
        }
    }
    return true;
}

QByteArray paletteOf(const QImage &image)
{
    QByteArray palette;
    const QList<QRgb> colours = image.colorTable();
    for (const QRgb colour : colours) {
        palette.append(static_cast<char>(qRed(colour)));
        palette.append(static_cast<char>(qGreen(colour)));
        palette.append(static_cast<char>(qBlue(colour)));
    }
    return palette;
}

} // namespace

ImportedPicture inspectDecoded(const QString &path)
{
    ImportedPicture picture;
    const QImage image = decode(path, &picture.orientation);
    picture.coding = PictureCoding::Decoded;
    picture.pixels = image.size();
    picture.bits = isDeep(image) ? 16 : 8;
    picture.components = isGrey(image) ? 1 : 3;
    if (image.format() == QImage::Format_Indexed8) {
        picture.palette = paletteOf(image);
    }
    picture.profile = image.colorSpace().iccProfile();
    picture.maskBits = isOpaque(image) ? 0 : picture.bits;
    return picture;
}

void writeDecodedRows(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    const QImage image = decode(path);
    const int channels = channelsOf(image);
    PngRowWriter writer(image.size(), channels, isDeep(image) ? 16 : 8,
                        image.format() == QImage::Format_Indexed8 ? PngRowWriter::Relation::None
                                                                  : PngRowWriter::Relation::Near,
                        sink);
    std::vector<unsigned char> row;
    for (int y = 0; y < image.height(); ++y) {
        throwIfCancelled(cancel);
        pick(image, y, 0, channels - 1, row);
        writer.writeRow(row.data());
    }
    writer.finish();
}

void writeDecodedMask(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel)
{
    const QImage image = decode(path);
    PngRowWriter writer(image.size(), 1, isDeep(image) ? 16 : 8, PngRowWriter::Relation::Near,
                        sink);
    std::vector<unsigned char> row;
    for (int y = 0; y < image.height(); ++y) {
        throwIfCancelled(cancel);
        pickMask(image, y, row);
        writer.writeRow(row.data());
    }
    writer.finish();
}

} // namespace pdfcore
