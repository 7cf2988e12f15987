// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/support/pdf_fixture.h"

#include <QFile>

#include <memory>
#include <string>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

namespace PdfFixture {

namespace {

QPDFObjectHandle rectangle(const QRectF &rect)
{
    return QPDFObjectHandle::newArray(
        QPDFObjectHandle::Rectangle(rect.left(), rect.top(), rect.right(), rect.bottom()));
}

QByteArray written(QPDFWriter &writer)
{
    writer.setOutputMemory();
    writer.write();
    const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(buffer->getBuffer()),
            static_cast<qsizetype>(buffer->getSize())};
}

} // namespace

QByteArray fill(const QRectF &rect, const QColor &colour)
{
    return QByteArray::number(colour.redF(), 'f', 4) + ' ' +
           QByteArray::number(colour.greenF(), 'f', 4) + ' ' +
           QByteArray::number(colour.blueF(), 'f', 4) + " rg " + QByteArray::number(rect.x()) +
           ' ' + QByteArray::number(rect.y()) + ' ' + QByteArray::number(rect.width()) + ' ' +
           QByteArray::number(rect.height()) + " re f\n";
}

Page quartered(const QSizeF &size)
{
    const double w = size.width() / 2;
    const double h = size.height() / 2;
    Page page;
    page.mediaBox = QRectF(QPointF(0, 0), size);
    page.content = fill({0, 0, w, h}, Qt::red) + fill({w, 0, w, h}, Qt::green) +
                   fill({0, h, w, h}, Qt::blue) + fill({w, h, w, h}, Qt::yellow);
    return page;
}

Page plain(const QSizeF &size, const QColor &colour)
{
    Page page;
    page.mediaBox = QRectF(QPointF(0, 0), size);
    page.content = fill(page.mediaBox, colour);
    return page;
}

QColor numberColour(int index)
{
    constexpr int kStep = 51;
    constexpr int kLevels = 5;
    return {(index % kLevels) * kStep, (index / kLevels % kLevels) * kStep,
            (index / kLevels / kLevels % kLevels) * kStep};
}

QByteArray document(const QList<Page> &pages)
{
    QPDF pdf;
    pdf.emptyPDF();
    for (const Page &spec : pages) {
        QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
        page.replaceKey("/MediaBox", rectangle(spec.mediaBox));
        if (!spec.cropBox.isEmpty()) {
            page.replaceKey("/CropBox", rectangle(spec.cropBox));
        }
        if (spec.rotate != 0) {
            page.replaceKey("/Rotate", QPDFObjectHandle::newInteger(spec.rotate));
        }
        if (spec.userUnit != 1) {
            page.replaceKey("/UserUnit", QPDFObjectHandle::newReal(spec.userUnit, 4));
        }
        page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
        page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, spec.content.toStdString()));
        pdf.addPage(pdf.makeIndirectObject(page), false);
    }
    QPDFWriter writer(pdf);
    return written(writer);
}

QByteArray pagesByNumber(int count)
{
    QList<Page> pages;
    pages.reserve(count);
    for (int i = 0; i < count; ++i) {
        pages.append(plain({200, 300}, numberColour(i)));
    }
    return document(pages);
}

QByteArray fromObjects(const QList<QByteArray> &bodies, const QByteArray &trailerEntries)
{
    QByteArray file = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    QByteArray table = "0000000000 65535 f \n";
    for (qsizetype i = 0; i < bodies.size(); ++i) {
        table += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(i + 1) + " 0 obj\n" + bodies.at(i) + "\nendobj\n";
    }
    const qsizetype start = file.size();
    const QByteArray size = QByteArray::number(bodies.size() + 1);
    file += "xref\n0 " + size + '\n' + table;
    file += "trailer\n<< /Size " + size + " /Root 1 0 R " + trailerEntries + " >>\n";
    file += "startxref\n" + QByteArray::number(start) + "\n%%EOF\n";
    return file;
}

QByteArray streamBody(const QByteArray &entries, const QByteArray &data)
{
    return "<< " + entries + " /Length " + QByteArray::number(data.size()) + " >>\nstream\n" +
           data + "\nendstream";
}

QByteArray onePage(const QByteArray &content, const QByteArray &resources,
                   const QList<QByteArray> &more, const QByteArray &pageEntries)
{
    return fromObjects(QList<QByteArray>{
                           "<< /Type /Catalog /Pages 2 0 R >>",
                           "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                           "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R "
                           "/Resources << " +
                               resources + " >> " + pageEntries + " >>",
                           streamBody({}, content),
                       } +
                       more);
}

QByteArray encrypted(const QByteArray &document, const Encryption &encryption)
{
    QPDF pdf;
    pdf.processMemoryFile("fixture", document.constData(), static_cast<size_t>(document.size()));
    QPDFWriter writer(pdf);
    const char *user = encryption.userPassword.constData();
    const char *owner = encryption.ownerPassword.constData();
    switch (encryption.revision) {
    case 3:
        writer.setR3EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full);
        break;
    case 4:
        writer.setR4EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full, true, true);
        break;
    case 5:
        writer.setR5EncryptionParameters(user, owner, true, true, true, true, true, true,
                                         qpdf_r3p_full, true);
        break;
    default:
        writer.setR6EncryptionParameters(user, owner, true, true, true, true, true, true,
                                         qpdf_r3p_full, true);
        break;
    }
    return written(writer);
}

bool write(const QString &path, const QByteArray &data)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

} // namespace PdfFixture
