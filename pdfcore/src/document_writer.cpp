#include "pdfcore/src/document_writer.h"

#include "pdfcore/src/atomic_file.h"
#include "pdfcore/src/blank_page.h"
#include "pdfcore/src/qpdf_io.h"
#include "pdfcore/src/qpdf_source.h"
#include "pdfcore/src/source_files.h"
#include "pdfcore/src/source_page.h"

#include <QHash>
#include <QPair>

#include <cmath>
#include <map>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

namespace pdfcore {

namespace {

/// A source document while its pages are copied.
struct Source
{
    std::shared_ptr<QPDF> document;
    std::vector<QPDFObjectHandle> pages;
};

/// The sources of one output, opened once each and kept open until the output is written.
class Sources
{
public:
    /// Null on failure, with the error in `outcome`.
    Source *get(const PdfSourcePage &page, EngineError *outcome)
    {
        const QString &password = page.password;
        const QString path = SourceFiles::instance().locate(page, outcome);
        if (outcome->isError())
            return nullptr;
        const std::pair<QString, QString> key(path, password);
        if (const auto found = m_sources.find(key); found != m_sources.end())
            return &found->second;
        std::shared_ptr<QPDF> document = openQpdf(path, password, outcome);
        // The content may have moved before it was open; what is open stays what it is.
        EngineError moved;
        if (SourceFiles::instance().locate(page, &moved) != path) {
            *outcome = moved;
            return moved.isError() ? nullptr : get(page, outcome);
        }
        if (!document)
            return nullptr;
        std::vector<QPDFObjectHandle> pages = pagesOf(*document);
        return &m_sources.emplace(key, Source{std::move(document), std::move(pages)}).first->second;
    }

    /// The highest PDF version that a source asks for.
    [[nodiscard]] PDFVersion version() const
    {
        PDFVersion highest(1, 5);
        for (const auto &[key, source] : m_sources)
            highest.updateIfGreater(source.document->getVersionAsPDFVersion());
        return highest;
    }

private:
    std::map<std::pair<QString, QString>, Source> m_sources;
};

/// A rotation in degrees brought to the nearest quarter turn from 0 to 270.
int quarterTurn(long long degrees)
{
    const long long positive = ((degrees % 360) + 360) % 360;
    return static_cast<int>(((positive + 45) / 90) % 4) * 90;
}

/// Gives a page of the output the rotation `own` of its source, turned clockwise by `rotation`.
/// Also when that is none: a copy of an earlier page of the output still has that page's.
void turnPage(QPDFObjectHandle page, QPDFObjectHandle own, int rotation)
{
    const long long before = own.isNumber() ? std::llround(own.getNumericValue()) : 0;
    const int turned = quarterTurn(quarterTurn(before) + static_cast<long long>(rotation));
    if (turned == 0)
        page.removeKey("/Rotate");
    else
        page.replaceKey("/Rotate", QPDFObjectHandle::newInteger(turned));
}

/// Copies a page of a source to the end of the output. The same page may come again.
void addCopy(QPDF &output, QPDFObjectHandle page, int rotation)
{
    output.addPage(output.copyForeignObject(page), false);
    turnPage(output.getAllPages().back(), page.getKey("/Rotate"), rotation);
}

EngineError addPages(const QList<PdfSourcePage> &pages, Sources &sources, QPDF &output)
{
    for (const PdfSourcePage &page : pages) {
        if (isBlankPage(page)) {
            QPDFObjectHandle blank = newBlankPage(output, page.pageSize);
            turnPage(blank, QPDFObjectHandle::newNull(), page.rotation);
            output.addPage(blank, false);
        } else {
            EngineError outcome;
            Source *source = sources.get(page, &outcome);
            if (source == nullptr)
                return outcome;
            if (page.pageIndex < 0 ||
                static_cast<std::size_t>(page.pageIndex) >= source->pages.size()) {
                return {
                    PdfBackendError::InvalidDocument,
                    QStringLiteral("The source has no page %1.").arg(qint64{page.pageIndex} + 1)};
            }
            addCopy(output, source->pages[static_cast<std::size_t>(page.pageIndex)], page.rotation);
        }
    }
    return {};
}

/// Assembles and writes the output to `file`. The sources are closed again when it returns.
EngineError writeTo(const QList<PdfSourcePage> &pages, AtomicFile &file)
{
    QDeviceOutput pipeline(file.device());
    try {
        Sources sources;
        QPDF output;
        output.setSuppressWarnings(true);
        output.emptyPDF();
        if (EngineError error = addPages(pages, sources, output); error.isError())
            return error;
        QPDFWriter writer(output);
        writer.setOutputPipeline(&pipeline);
        writer.setObjectStreamMode(qpdf_o_generate);
        writer.setPreserveEncryption(false);
        writer.setMinimumPDFVersion(sources.version());
        writer.write();
    } catch (const std::exception &exception) {
        if (pipeline.hasFailed())
            return {PdfBackendError::WriteFailed, QString::fromUtf8(exception.what())};
        return qpdfReadError(exception);
    }
    QString reason;
    if (!file.finishWriting(&reason))
        return {PdfBackendError::WriteFailed, reason};
    return {};
}

/// Reopens what was written and counts its pages.
EngineError check(const QString &path, qsizetype pageCount)
{
    try {
        QPDF written;
        written.setSuppressWarnings(true);
        written.setAttemptRecovery(false);
        written.processInputSource(std::make_shared<QFileInput>(path));
        const auto found = static_cast<qsizetype>(written.getAllPages().size());
        if (found == pageCount)
            return {};
        return {
            PdfBackendError::WriteFailed,
            QStringLiteral("The new file has %1 pages instead of %2.").arg(found).arg(pageCount)};
    } catch (const std::exception &exception) {
        return {PdfBackendError::WriteFailed, QStringLiteral("The new file cannot be read back: %1")
                                                  .arg(QString::fromUtf8(exception.what()))};
    }
}

/// Whether the sources are still what they were when they were read.
EngineError checkSources(const QList<PdfSourcePage> &pages)
{
    const PdfSourceFile *checked = nullptr;
    for (const PdfSourcePage &page : pages) {
        if (page.source.get() == checked)
            continue;
        checked = page.source.get();
        EngineError outcome;
        SourceFiles::instance().locate(page, &outcome);
        if (outcome.isError())
            return outcome;
    }
    return {};
}

} // namespace

EngineError writeDocument(const QList<PdfSourcePage> &pages, const QString &path)
{
    if (path.isEmpty())
        return {PdfBackendError::WriteFailed, QStringLiteral("There is no file name.")};
    if (pages.isEmpty())
        return {PdfBackendError::WriteFailed, QStringLiteral("There are no pages to write.")};

    AtomicFile file(path);
    QString reason;
    if (!file.open(&reason))
        return {PdfBackendError::WriteFailed, reason};
    if (EngineError error = writeTo(pages, file); error.isError())
        return error;
    if (EngineError error = check(file.temporaryPath(), pages.size()); error.isError())
        return error;
    if (EngineError error = checkSources(pages); error.isError())
        return error;
    if (!SourceFiles::instance().replaceTarget(file, &reason))
        return {PdfBackendError::WriteFailed, reason};
    return {};
}

} // namespace pdfcore
