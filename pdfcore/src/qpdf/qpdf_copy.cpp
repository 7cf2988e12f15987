// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/qpdf_copy.h"

#include "pdfcore/src/qpdf/names.h"
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"

#include <qpdf/QPDFWriter.hh>

#include <QTemporaryFile>

namespace pdfcore {

namespace {

/// Lets the encryption dictionary state the length of key that the document was read with: QPDF
/// reads files that state a wrong one, or none, but copies what they state.
void settleKeyLength(QPDF &document, QPDFObjectHandle encryption)
{
    QPDFObjectHandle version = encryption.getKey("/V");
    if (!version.isInteger() || version.getIntValue() < 2) {
        return;
    }
    constexpr long long kBitsPerByte = 8;
    const auto bits = static_cast<long long>(document.getEncryptionKey().size()) * kBitsPerByte;
    encryption.replaceKey("/Length", QPDFObjectHandle::newInteger(bits));
}

bool hasIdentity(QPDFObjectHandle trailer)
{
    QPDFObjectHandle identity = trailer.getKey("/ID");
    return identity.isArray() && identity.getArrayNItems() == 2 &&
           identity.getArrayItem(0).isString() && identity.getArrayItem(1).isString();
}

} // namespace

void prepareTrailer(QPDF &document, QPDF *protection)
{
    QPDFObjectHandle trailer = document.getTrailer();
    // The right value is written in its place, but only if there is one.
    trailer.replaceKey("/Size", QPDFObjectHandle::newInteger(1));
    if (!hasIdentity(trailer)) {
        trailer.removeKey("/ID");
    }
    if (protection == nullptr) {
        return;
    }
    QPDFObjectHandle ofProtection = protection->getTrailer();
    if (!hasIdentity(ofProtection)) {
        // What the key was made of, and is made of again; QPDF takes a missing one for empty.
        const QPDFObjectHandle empty = QPDFObjectHandle::newString("");
        ofProtection.replaceKey("/ID", QPDFObjectHandle::newArray({empty, empty}));
    }
    settleKeyLength(*protection, ofProtection.getKey("/Encrypt"));
}

std::unique_ptr<QTemporaryFile> newReadableCopy(const QString &path, const QString &password,
                                                QDeadlineTimer deadline, EngineError *outcome)
{
    const std::shared_ptr<QPDF> document =
        openQpdf(path, password, outcome, Damage::Repair, deadline);
    if (!document) {
        return nullptr;
    }
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open()) {
        *outcome = {PdfBackendError::InvalidDocument, file->errorString()};
        return nullptr;
    }
    try {
        if (pagesOf(*document).empty()) {
            *outcome = {PdfBackendError::InvalidDocument, QStringLiteral("There are no pages.")};
            return nullptr;
        }
        prepareTrailer(*document, hasKey(*document) ? document.get() : nullptr);
        escapeNames(*document);
        QDeviceOutput pipeline(*file);
        QPDFWriter writer(*document);
        writer.setPreserveEncryption(hasKey(*document));
        // The copy lives shortly: what is packed stays packed, nothing else is.
        writer.setStreamDataMode(qpdf_s_preserve);
        writer.setObjectStreamMode(qpdf_o_disable);
        writeQpdf(writer, pipeline);
        if (!file->flush()) {
            *outcome = {PdfBackendError::InvalidDocument, file->errorString()};
            return nullptr;
        }
    } catch (const std::exception &exception) {
        *outcome = qpdfReadError(exception);
        return nullptr;
    }
    // What could not be read in time may have passed for something that is not there.
    if (deadline.hasExpired()) {
        *outcome = {PdfBackendError::InvalidDocument, QStringLiteral("It takes too long.")};
        return nullptr;
    }
    file->close();
    return file;
}

} // namespace pdfcore
