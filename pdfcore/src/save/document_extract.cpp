// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/document_extract.h"

#include "pdfcore/src/qpdf/names.h"
#include "pdfcore/src/qpdf/qpdf_copy.h"
#include "pdfcore/src/save/output_document.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <utility>

namespace pdfcore {

std::shared_ptr<const DocumentExtract> DocumentExtract::of(const QList<PdfSourcePage> &pages,
                                                           const DocumentExtract *from,
                                                           EngineError *outcome)
{
    std::shared_ptr<DocumentExtract> extract(new DocumentExtract);
    std::map<qint32, PdfSourcePage> distinct;
    for (const PdfSourcePage &page : pages) {
        PdfSourcePage &kept = distinct.emplace(page.pageIndex, page).first->second;
        kept.rotation = 0;
    }
    QList<PdfSourcePage> sequence;
    for (const auto &[index, page] : distinct) {
        extract->m_indexes[index] = static_cast<qint32>(sequence.size());
        sequence.append(page);
    }

    OutputDocument output(from != nullptr ? from->open() : nullptr);
    // What is numbered by its place has another one in each output.
    *outcome =
        output.assemble(from != nullptr ? from->located(sequence) : sequence, Unlabelled::Leave);
    if (outcome->isError()) {
        return nullptr;
    }
    extract->m_isProtected = from != nullptr ? from->isProtected() : output.protection() != nullptr;
    extract->m_packsObjects = from != nullptr ? from->packsObjects() : output.packsObjects();
    prepareTrailer(output.document(), nullptr);
    escapeNames(output.document());
    QPDFWriter writer(output.document());
    writer.setOutputMemory();
    // What is read again soon is neither packed nor unpacked.
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.setCompressStreams(false);
    writer.setDecodeLevel(qpdf_dl_none);
    writer.setPreserveEncryption(false);
    writer.setMinimumPDFVersion(output.version());
    writer.write();
    extract->m_content = writer.getBufferSharedPointer();
    return extract;
}

std::shared_ptr<QPDF> DocumentExtract::open() const
{
    auto document = std::make_shared<QPDF>();
    document->setSuppressWarnings(true);
    document->setAttemptRecovery(false);
    document->processMemoryFile("extract", reinterpret_cast<const char *>(m_content->getBuffer()),
                                m_content->getSize());
    return document;
}

QList<PdfSourcePage> DocumentExtract::located(QList<PdfSourcePage> pages) const
{
    for (PdfSourcePage &page : pages) {
        if (!isBlankPage(page)) {
            page.pageIndex = m_indexes.at(page.pageIndex);
        }
    }
    return pages;
}

} // namespace pdfcore
