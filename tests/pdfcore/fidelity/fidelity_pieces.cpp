// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"

using namespace EngineCalls;

namespace FidelityPieces {

QByteArray references(const QByteArray &name, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        text += '{' + name + QByteArray::number(i) + "} ";
    }
    return text;
}

FidelityAssembly withManyPages(int count, const QByteArray &pageEntries)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 1);
    const QByteArray page = "<< /Type /Page /Parent {pages} /MediaBox [0 0 300 400] /Contents "
                            "{content1} " +
                            pageEntries + " >>";
    for (int i = 0; i < count; ++i) {
        document.set("many" + QByteArray::number(i), page);
    }
    document.set("pages", "<< /Type /Pages /Count " + QByteArray::number(count) + " /Kids [" +
                              references("many", count) + "] >>");
    return document;
}

void saveList(const FidelityCase &test, const QString &list)
{
    const QList<PdfSourcePage> pages = test.pages(list);
    const Outcome outcome = save(pages, test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    QCOMPARE(inspect(test.output()).pageSizes.size(), pages.size());
}

QPDFObjectHandle below(QPDFObjectHandle object, const std::vector<const char *> &keys)
{
    for (const char *key : keys) {
        object = object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
    }
    return object;
}

QByteArray everythingIn(FidelityDocument &document)
{
    QByteArray text;
    for (QPDFObjectHandle object : document.pdf().getAllObjects()) {
        QPDFObjectHandle value = object.isStream() ? object.getDict() : object;
        text +=
            QByteArray::fromStdString(value.unparseResolved()) + '\n' + fidelityData(object) + '\n';
    }
    return text;
}

FidelityAssembly withForm(const QByteArray &prefix, int count, const QByteArray &form)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, count);
    document.addEntries("catalogue", "/AcroForm {form}");
    document.set("form", "<< " + form + " >>");
    return document;
}

void addWidget(FidelityAssembly &document, const QByteArray &name, const QByteArray &entries)
{
    document.set(name, "<< /Type /Annot /Subtype /Widget /Rect [1 2 30 40] " + entries + " >>");
}

void annotate(FidelityAssembly &document, int page, const QByteArray &annotations)
{
    document.addEntries("page" + QByteArray::number(page), "/Annots [" + annotations + ']');
}

} // namespace FidelityPieces
