// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_corpus.h"

#include "tests/pdfcore/fidelity/fidelity_fields.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

namespace FidelityCorpus {

namespace {

/// The flag of annotations that do not turn with their pages.
constexpr long long kNoRotate = 1 << 4;

/// The value of a key of a dictionary; null for anything else.
QPDFObjectHandle get(QPDFObjectHandle object, const char *key)
{
    return object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
}

bool isName(QPDFObjectHandle object, const char *name)
{
    return object.isNameAndEquals(name);
}

bool isFilledArray(QPDFObjectHandle object)
{
    return object.isArray() && object.getArrayNItems() > 0;
}

QStringList featuresOf(QPDFObjectHandle annotation)
{
    QPDFObjectHandle kind = get(annotation, "/Subtype");
    if (isName(kind, "/FileAttachment")) {
        return {QStringLiteral("attachments")};
    }
    if (isName(kind, "/Widget")) {
        QStringList found{QStringLiteral("fields")};
        if (isName(FidelityFields::attribute(annotation, "/FT"), "/Sig") &&
            FidelityFields::attribute(annotation, "/V").isDictionary()) {
            found.append(QStringLiteral("signatures"));
        }
        return found;
    }
    if (!isName(kind, "/Link")) {
        return {};
    }
    QPDFObjectHandle action = get(get(annotation, "/A"), "/S");
    if (!get(annotation, "/Dest").isNull() || isName(action, "/GoTo")) {
        return {QStringLiteral("page links")};
    }
    if (isName(action, "/URI")) {
        return {QStringLiteral("web links")};
    }
    return {};
}

} // namespace

QStringList features(FidelityDocument &document)
{
    QPDFObjectHandle root = document.catalogue();
    QStringList found;
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (const QPDFObjectHandle &annotation : document.annotations(i)) {
            found += featuresOf(annotation);
        }
    }
    QPDFObjectHandle oldNames = root.getKey("/Dests");
    const std::pair<const char *, bool> others[] = {
        {"outline", get(root.getKey("/Outlines"), "/First").isDictionary()},
        {"fields", isFilledArray(get(root.getKey("/AcroForm"), "/Fields"))},
        {"labels", root.getKey("/PageLabels").isDictionary()},
        {"attachments", !document.names("/EmbeddedFiles").empty()},
        {"destinations", (oldNames.isDictionary() && !oldNames.getKeys().empty()) ||
                             !document.names("/Dests").empty()},
        {"optional content", isFilledArray(get(root.getKey("/OCProperties"), "/OCGs"))},
        {"tags", root.getKey("/StructTreeRoot").isDictionary()},
    };
    for (const auto &[name, isThere] : others) {
        if (isThere) {
            found.append(QLatin1String(name));
        }
    }
    found.sort();
    found.removeDuplicates();
    return found;
}

QByteArray marked(FidelityDocument &document, const QByteArray &prefix)
{
    int number = 0;
    for (QPDFObjectHandle page : document.pages()) {
        // A comment: it draws nothing and needs no font.
        const QByteArray mark = "% (" + prefix + '-' + QByteArray::number(++number) + ") Tj\n";
        std::vector<QPDFObjectHandle> parts{document.pdf().newStream(mark.toStdString())};
        QPDFObjectHandle contents = page.getKey("/Contents");
        if (contents.isArray()) {
            for (const QPDFObjectHandle &part : contents.getArrayAsVector()) {
                parts.push_back(part);
            }
        } else if (contents.isStream()) {
            parts.push_back(contents);
        }
        page.replaceKey("/Contents", QPDFObjectHandle::newArray(parts));
    }
    try {
        QPDFWriter writer(document.pdf());
        writer.setOutputMemory();
        writer.setCompressStreams(false);
        writer.setDecodeLevel(qpdf_dl_none);
        writer.setPreserveUnreferencedObjects(true);
        writer.write();
        const std::shared_ptr<Buffer> file = writer.getBufferSharedPointer();
        return {reinterpret_cast<const char *>(file->getBuffer()),
                static_cast<qsizetype>(file->getSize())};
    } catch (const std::exception &) {
        return {};
    }
}

bool hasUpright(FidelityDocument &document, qsizetype index)
{
    for (const QPDFObjectHandle &annotation : document.annotations(index)) {
        QPDFObjectHandle flags = get(annotation, "/F");
        if (flags.isInteger() && (flags.getIntValue() & kNoRotate) != 0) {
            return true;
        }
    }
    return false;
}

bool hasLooseParts(FidelityDocument &document, qsizetype index)
{
    const auto roots = [&] {
        std::vector<QPDFObjGen> found;
        for (const FidelityWidget &widget : FidelityFields::onPage(document, index)) {
            found.push_back(widget.root);
        }
        return found;
    };
    const std::vector<QPDFObjGen> before = roots();
    FidelityFields::completeForm(document);
    return roots() != before;
}

bool isSigned(FidelityDocument &document, qsizetype index)
{
    for (const QPDFObjectHandle &annotation : document.annotations(index)) {
        if (featuresOf(annotation).contains(QStringLiteral("signatures"))) {
            return true;
        }
    }
    return false;
}

} // namespace FidelityCorpus
