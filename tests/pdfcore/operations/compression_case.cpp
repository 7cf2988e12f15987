// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/operations/compression_case.h"

#include <qpdf/Buffer.hh>

#include <QBuffer>
#include <QImageWriter>
#include <QRandomGenerator>

#include <cmath>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace CompressionCase {

QByteArray photo(QSize size, int components)
{
    QRandomGenerator random(11);
    QByteArray samples;
    samples.reserve(qsizetype{size.width()} * size.height() * components);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const double u = static_cast<double>(x) / size.width();
            const double v = static_cast<double>(y) / size.height();
            for (int k = 0; k < components; ++k) {
                const double wave = std::sin(6 * u + k) * std::cos(5 * v - k);
                const int noise = static_cast<int>(random.bounded(13)) - 6;
                samples.append(
                    static_cast<char>(qBound(0, static_cast<int>(128 + 100 * wave) + noise, 255)));
            }
        }
    }
    return samples;
}

QByteArray jpegPhoto(QSize size, int quality, bool isPacked)
{
    const QByteArray samples = photo(size, 3);
    const QImage picture(reinterpret_cast<const uchar *>(samples.constData()), size.width(),
                         size.height(), qsizetype{size.width()} * 3, QImage::Format_RGB888);
    QBuffer jpeg;
    jpeg.open(QIODevice::WriteOnly);
    QImageWriter writer(&jpeg, "JPG");
    writer.setQuality(quality);
    writer.setOptimizedWrite(isPacked);
    writer.setProgressiveScanWrite(isPacked);
    writer.write(picture);
    return jpeg.data();
}

QByteArray flate(const QByteArray &bytes)
{
    // Qt puts the length before it.
    return qCompress(bytes, 6).mid(4);
}

QByteArray image(QSize size, const QByteArray &entries, const QByteArray &data)
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width " +
                                      QByteArray::number(size.width()) + " /Height " +
                                      QByteArray::number(size.height()) + ' ' + entries,
                                  data);
}

QByteArray jpegImage(QSize size, int quality, const QByteArray &entries)
{
    return image(size, "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /DCTDecode " + entries,
                 jpegPhoto(size, quality));
}

QByteArray sampledImage(QSize size, const QByteArray &entries, const QByteArray &samples)
{
    return image(size, "/BitsPerComponent 8 /Filter /FlateDecode " + entries, flate(samples));
}

QByteArray pageWith(const QByteArray &imageBody, double points, const QList<QByteArray> &more)
{
    const QByteArray side = QByteArray::number(points);
    return PdfFixture::onePage("q " + side + " 0 0 " + side + " 0 0 cm /X Do Q",
                               "/XObject << /X 5 0 R >>", QList<QByteArray>{imageBody} + more);
}

Result::Result(const QByteArray &source, PdfCompressionLevel level)
    : m_source(source)
    , m_outcome(PdfCompression::compress(m_folder.add(u"source.pdf"_s, source), level,
                                         PdfPlacement::replacing(path()), PdfCancelFlag()))
{}

QByteArray Result::bytes() const
{
    return contentOf(path());
}

QPDF &Result::pdf()
{
    if (!m_pdf) {
        m_pdf = std::make_unique<QPDF>();
        m_pdf->setSuppressWarnings(true);
        m_pdf->processFile(path().toUtf8().constData());
    }
    return *m_pdf;
}

QPDFObjectHandle Result::page()
{
    return pdf().getAllPages().at(0);
}

std::vector<QPDFObjectHandle> Result::images()
{
    std::vector<QPDFObjectHandle> found;
    for (QPDFObjectHandle object : pdf().getAllObjects()) {
        if (object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image")) {
            found.push_back(object);
        }
    }
    return found;
}

QPDFObjectHandle Result::image()
{
    std::vector<QPDFObjectHandle> all = images();
    for (QPDFObjectHandle &one : all) {
        bool isMask = false;
        for (QPDFObjectHandle &other : all) {
            for (const char *key : {"/SMask", "/Mask"}) {
                QPDFObjectHandle mask = other.getDict().getKey(key);
                isMask = isMask || (mask.isStream() && mask.getObjGen() == one.getObjGen());
            }
        }
        if (!isMask) {
            return one;
        }
    }
    return QPDFObjectHandle::newNull();
}

QSize Result::imageSize()
{
    return sizeOf(image());
}

int Result::difference() const
{
    const auto look = [](const QString &file) {
        // Small enough for noise to go and for the places to stay.
        return render(filePage(file), {400, 400})
            .image.scaled(40, 40, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    return distance(look(m_folder.path(u"source.pdf"_s)), look(path()));
}

QSize sizeOf(QPDFObjectHandle image)
{
    if (!image.isStream()) {
        return {};
    }
    return {image.getDict().getKey("/Width").getIntValueAsInt(),
            image.getDict().getKey("/Height").getIntValueAsInt()};
}

QByteArray samplesOf(QPDFObjectHandle image)
{
    const auto data = filterOf(image) == "/DCTDecode" ? image.getRawStreamData()
                                                      : image.getStreamData(qpdf_dl_generalized);
    const QByteArray bytes(reinterpret_cast<const char *>(data->getBuffer()),
                           static_cast<qsizetype>(data->getSize()));
    if (filterOf(image) != "/DCTDecode") {
        return bytes;
    }
    const QImage picture = QImage::fromData(bytes, "JPG").convertToFormat(QImage::Format_RGB888);
    QByteArray samples;
    for (int y = 0; y < picture.height(); ++y) {
        samples.append(reinterpret_cast<const char *>(picture.constScanLine(y)),
                       qsizetype{picture.width()} * 3);
    }
    return samples;
}

QByteArray filterOf(QPDFObjectHandle stream)
{
    return QByteArray::fromStdString(stream.getDict().getKey("/Filter").unparse());
}

} // namespace CompressionCase
