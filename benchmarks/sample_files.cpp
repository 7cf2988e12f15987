// SPDX-License-Identifier: AGPL-3.0-or-later
#include "benchmarks/sample_files.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QRandomGenerator>

namespace {

/// Writes numbered objects one after another and the cross-reference table at the end.
class PdfFile
{
public:
    explicit PdfFile(const QString &path)
        : m_file(path)
    {
        m_ok = m_file.open(QIODevice::WriteOnly);
        put("%PDF-1.4\n");
    }

    /// The number of the next object.
    [[nodiscard]] qsizetype next() const { return m_offsets.size() + 1; }

    void object(const QByteArray &body)
    {
        m_offsets.append(m_file.pos());
        put(QByteArray::number(m_offsets.size()) + " 0 obj\n" + body + "\nendobj\n");
    }

    void stream(const QByteArray &entries, const QByteArray &data)
    {
        object("<<" + entries + "/Length " + QByteArray::number(data.size()) + ">>stream\n" + data +
               "\nendstream");
    }

    bool finish()
    {
        const qint64 start = m_file.pos();
        put("xref\n0 " + QByteArray::number(m_offsets.size() + 1) + "\n0000000000 65535 f \n");
        for (const qint64 offset : m_offsets) {
            put(QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n");
        }
        put("trailer<</Size " + QByteArray::number(m_offsets.size() + 1) +
            "/Root 1 0 R>>\nstartxref\n" + QByteArray::number(start) + "\n%%EOF\n");
        return m_ok && m_file.flush();
    }

private:
    void put(const QByteArray &data) { m_ok = m_ok && m_file.write(data) == data.size(); }

    QFile m_file;
    QList<qint64> m_offsets;
    bool m_ok = false;
};

/// The catalog and a flat page tree over objects `first`, `first` + `step`, ...
void writeTree(PdfFile &pdf, int pages, int first, int step)
{
    pdf.object("<</Type/Catalog/Pages 2 0 R>>");
    QByteArray kids;
    for (int i = 0; i < pages; ++i) {
        kids += QByteArray::number(first + i * step) + " 0 R ";
    }
    pdf.object("<</Type/Pages/Kids[" + kids + "]/Count " + QByteArray::number(pages) + ">>");
}

QByteArray scannedPage(quint32 seed)
{
    QImage image(1654, 2339, QImage::Format_Grayscale8);
    image.fill(250);
    QRandomGenerator random(seed);
    QPainter painter(&image);
    for (int line = 0; line < 60; ++line) {
        int x = 150;
        while (x < 1450) {
            const int width = random.bounded(20, 120);
            painter.fillRect(x, 150 + line * 34, width, 16,
                             QColor::fromHsv(0, 0, random.bounded(20, 90)));
            x += width + 14;
        }
    }
    painter.end();
    for (int i = 0; i < 200'000; ++i) {
        image.scanLine(random.bounded(image.height()))[random.bounded(image.width())] ^= 8;
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 60);
    return jpeg;
}

/// Gradients with the noise of a camera.
QByteArray photograph(quint32 seed)
{
    QImage image(2000, 1500, QImage::Format_RGB32);
    QRandomGenerator random(seed);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = random.bounded(12);
            line[x] = qRgb((x / 10 + static_cast<int>(seed) * 16 + noise) % 256,
                           (y / 8 + noise) % 256, ((x + y) / 20 + noise) % 256);
        }
    }
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 85);
    return jpeg;
}

} // namespace

namespace SampleFiles {

bool writeText(const QString &path, int pages)
{
    PdfFile pdf(path);
    writeTree(pdf, pages, 4, 2);
    pdf.object("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    for (int page = 0; page < pages; ++page) {
        pdf.object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]"
                   "/Resources<</Font<</F1 3 0 R>>>>/Contents " +
                   QByteArray::number(pdf.next() + 1) + " 0 R>>");
        QByteArray content = "BT /F1 12 Tf 50 800 Td 14 TL\n";
        for (int line = 0; line < 50; ++line) {
            content += "(Line " + QByteArray::number(line) + " of page " +
                       QByteArray::number(page + 1) +
                       ": pages that hold ordinary text in one font and size.) Tj T*\n";
        }
        pdf.stream({}, content + "ET\n");
    }
    return pdf.finish();
}

bool writeScan(const QString &path, int pages)
{
    constexpr int kDistinctPictures = 12;
    QList<QByteArray> pictures;
    for (quint32 i = 0; i < kDistinctPictures; ++i) {
        pictures.append(scannedPage(i));
    }
    PdfFile pdf(path);
    writeTree(pdf, pages, 3, 3);
    for (int page = 0; page < pages; ++page) {
        const qsizetype number = pdf.next();
        pdf.object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Resources<</XObject<</I " +
                   QByteArray::number(number + 2) + " 0 R>>>>/Contents " +
                   QByteArray::number(number + 1) + " 0 R>>");
        pdf.stream({}, "q 595 0 0 842 0 0 cm /I Do Q");
        pdf.stream("/Type/XObject/Subtype/Image/Width 1654/Height 2339/BitsPerComponent 8"
                   "/ColorSpace/DeviceGray/Filter/DCTDecode",
                   pictures.at(page % kDistinctPictures));
    }
    return pdf.finish();
}

bool writePhotographs(const QString &folder, int count)
{
    constexpr int kDistinctPictures = 8;
    QList<QByteArray> pictures;
    for (quint32 i = 0; i < kDistinctPictures; ++i) {
        pictures.append(photograph(i));
    }
    for (int i = 0; i < count; ++i) {
        // A comment after the marker that a JPEG file begins with makes each one different.
        QByteArray picture = pictures.at(i % kDistinctPictures);
        const QByteArray number = QByteArray::number(i).rightJustified(6, '0');
        picture.insert(2, QByteArray("\xff\xfe\0\x08", 4) + number);
        QFile file(QDir(folder).filePath(QString::fromLatin1(number) + QStringLiteral(".jpg")));
        if (!file.open(QIODevice::WriteOnly) || file.write(picture) != picture.size()) {
            return false;
        }
    }
    return true;
}

} // namespace SampleFiles
