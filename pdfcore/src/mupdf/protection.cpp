// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/protection.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"

namespace pdfcore {

namespace {

pdf_obj *encryptionOf(fz_context *ctx, pdf_document *document)
{
    return pdf_dict_get(ctx, pdf_trailer(ctx, document), PDF_NAME(Encrypt));
}

/// The object as it stands in the file, which the caller drops: once a document has its key, MuPDF
/// decrypts the strings of all objects that it loads, and these were never encrypted.
pdf_obj *asInFile(fz_context *ctx, pdf_document *document, pdf_obj *object)
{
    const ObjectPlace place = placeOf(ctx, document, pdf_to_num(ctx, object));
    if (place.offset == 0) {
        return pdf_keep_obj(ctx, pdf_resolve_indirect(ctx, object));
    }
    return parseAt(ctx, document, place.offset).object;
}

} // namespace

QByteArray protectionOf(MupdfContext &context, pdf_document *document)
{
    char *entries = nullptr;
    std::size_t length = 0;
    const bool isWritten = context.run(
        [&](fz_context *ctx) {
            pdf_obj *encryption = encryptionOf(ctx, document);
            if (pdf_is_dict(ctx, encryption) == 0) {
                return;
            }
            pdf_obj *identity = pdf_dict_get(ctx, pdf_trailer(ctx, document), PDF_NAME(ID));
            pdf_obj *both = pdf_new_dict(ctx, document, 2);
            fz_try(ctx)
            {
                pdf_dict_put_drop(ctx, both, PDF_NAME(Encrypt),
                                  asInFile(ctx, document, encryption));
                if (identity != nullptr) {
                    pdf_dict_put_drop(ctx, both, PDF_NAME(ID), asInFile(ctx, document, identity));
                }
                entries = pdf_sprint_obj(ctx, nullptr, 0, &length, both, 1, 1);
            }
            fz_always(ctx)
            {
                pdf_drop_obj(ctx, both);
            }
            fz_catch(ctx)
            {
                fz_rethrow(ctx);
            }
        },
        nullptr);
    QByteArray protection;
    if (isWritten && entries != nullptr && length > 2) {
        // Sound as far as it goes, since some releases of QPDF repair no file without pages.
        protection = "%PDF-1.7\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n";
        const qsizetype pages = protection.size();
        protection += "2 0 obj\n<< /Type /Pages /Kids [] /Count 0 >>\nendobj\n";
        const qsizetype table = protection.size();
        constexpr int kOffsetDigits = 10;
        constexpr qsizetype kCatalogue = 9; // Behind the first line.
        protection += "xref\n0 3\n0000000000 65535 f \n";
        for (const qsizetype offset : {kCatalogue, pages}) {
            protection += QByteArray::number(offset).rightJustified(kOffsetDigits, '0');
            protection += " 00000 n \n";
        }
        // The entries come between << and >>.
        protection += "trailer\n<< /Size 3 /Root 1 0 R ";
        protection += QByteArray(entries + 2, static_cast<qsizetype>(length) - 2);
        protection += "\nstartxref\n";
        protection += QByteArray::number(table);
        protection += "\n%%EOF\n";
    }
    fz_free(context.get(), entries);
    return protection;
}

} // namespace pdfcore
