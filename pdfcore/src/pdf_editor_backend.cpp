#include "pdfcore/pdf_editor_backend.h"

#include "pdfcore/src/document_writer.h"
#include "pdfcore/src/engine_error.h"
#include "pdfcore/src/session_pool.h"
#include "pdfcore/src/source_files.h"
#include "pdfcore/src/source_page.h"

#include <exception>

namespace {

using pdfcore::EngineError;
using pdfcore::SessionPool;
using pdfcore::SourceFiles;

/// Pixels of the largest image that is made: 2 GiB of memory, enough for A2 paper at 1200 dpi.
constexpr qint64 kMaxPixels = qint64{1} << 29;

QImage renderBlank(QSize size, EngineError *outcome)
{
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) {
        *outcome = {PdfBackendError::RenderFailed, QStringLiteral("Not enough memory.")};
        return {};
    }
    image.fill(Qt::white);
    return image;
}

/// Renders pages one after another, keeping a document open while pages of the same file follow.
class BatchRenderer
{
public:
    QImage render(const PdfSourcePage &page, QSize size, EngineError *outcome)
    {
        *outcome = {};
        if (size.isEmpty()) {
            *outcome = {PdfBackendError::RenderFailed,
                        QStringLiteral("The size to render at is empty.")};
            return {};
        }
        if (qint64{size.width()} * size.height() > kMaxPixels) {
            *outcome = {PdfBackendError::RenderFailed,
                        QStringLiteral("An image of %1 × %2 pixels is too large.")
                            .arg(size.width())
                            .arg(size.height())};
            return {};
        }
        if (pdfcore::isBlankPage(page))
            return renderBlank(size, outcome);
        if (!borrow(page, outcome))
            return {};
        QImage image = m_session->render(page.pageIndex, page.rotation, size, outcome);
        if (!m_session->isUsable())
            m_session = {};
        return image;
    }

private:
    bool borrow(const PdfSourcePage &page, EngineError *outcome)
    {
        // A session that is kept is of one state of the file already.
        const QString path = SourceFiles::instance().locate(page, outcome);
        if (outcome->isError())
            return false;
        if (m_session && m_path == path && m_password == page.password)
            return true;
        m_session = {};
        m_session = SessionPool::instance().acquire(path, page.password, outcome);
        if (!m_session)
            return false;
        m_path = path;
        m_password = page.password;
        // The file may have been replaced before it could be borrowed; now it cannot be any more.
        if (SourceFiles::instance().locate(page, outcome) == path)
            return true;
        m_session = {};
        return !outcome->isError() && borrow(page, outcome);
    }

    SessionPool::Lease m_session;
    QString m_path;
    QString m_password;
};

/// Runs a step of the engine; nothing that it throws gets out.
template <typename Step>
EngineError guarded(PdfBackendError code, Step &&step)
{
    try {
        return step();
    } catch (const std::exception &exception) {
        return {code, QString::fromUtf8(exception.what())};
    }
}

} // namespace

bool PdfEditorBackend::inspectDocument(const QString &path, const QString &password,
                                       PdfDocumentInfo *info, PdfBackendError *error,
                                       QString *message)
{
    const EngineError outcome = guarded(PdfBackendError::InvalidDocument, [&] {
        EngineError step;
        const SessionPool::Lease session = SessionPool::instance().acquire(path, password, &step);
        if (!session)
            return step;
        if (info != nullptr)
            *info = {session->pages()->pageSizes, SourceFiles::instance().use(session->file())};
        return step;
    });
    pdfcore::report(outcome, error, message);
    return !outcome.isError();
}

QImage PdfEditorBackend::renderPage(const PdfSourcePage &page, QSize targetSize,
                                    PdfBackendError *error, QString *message)
{
    QImage image;
    const EngineError outcome = guarded(PdfBackendError::RenderFailed, [&] {
        EngineError step;
        image = BatchRenderer().render(page, targetSize, &step);
        return step;
    });
    pdfcore::report(outcome, error, message);
    return outcome.isError() ? QImage() : image;
}

QList<QImage> PdfEditorBackend::renderPages(const QList<PdfSourcePage> &pages,
                                            const QList<QSize> &targetSizes, QStringList *errors)
{
    QList<QImage> images(pages.size());
    QStringList messages(pages.size());
    BatchRenderer renderer;
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const EngineError outcome = guarded(PdfBackendError::RenderFailed, [&] {
            EngineError step;
            images[i] = renderer.render(pages.at(i), targetSizes.value(i), &step);
            return step;
        });
        messages[i] = outcome.message;
    }
    if (errors != nullptr)
        *errors = messages;
    return images;
}

bool PdfEditorBackend::saveDocument(const QList<PdfSourcePage> &pages, const QString &path,
                                    PdfBackendError *error, QString *message)
{
    const EngineError outcome =
        guarded(PdfBackendError::WriteFailed, [&] { return pdfcore::writeDocument(pages, path); });
    pdfcore::report(outcome, error, message);
    return !outcome.isError();
}
