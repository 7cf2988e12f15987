// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/embedded_pictures.h"

#include "pdfcore/src/operations/image_pixels.h"
#include "pdfcore/src/operations/image_search.h"
#include "pdfcore/src/operations/picture_set.h"
#include "pdfcore/src/operations/picture_source.h"
#include "pdfcore/src/operations/render_turn.h"
#include "pdfcore/src/operations/side_work.h"
#include "pdfcore/src/session/engine.h"

#include <memory>
#include <utility>

namespace pdfcore {

namespace {

enum class Pass { Pages, Resources };

/// What is found on a page; owned by whoever holds it, and of a session.
class OwnedImage
{
public:
    explicit OwnedImage(MupdfContext &context)
        : m_context(context)
    {}
    ~OwnedImage()
    {
        pdf_drop_obj(m_context.get(), m_found.object);
        fz_drop_image(m_context.get(), m_found.inlineImage);
    }
    OwnedImage(const OwnedImage &) = delete;
    OwnedImage &operator=(const OwnedImage &) = delete;

    [[nodiscard]] FoundImage &value() { return m_found; }

private:
    MupdfContext &m_context;
    FoundImage m_found;
};

class EmbeddedPictures
{
public:
    EmbeddedPictures(PdfSourcePage page, PictureSet &pictures, const PdfCancelFlag &cancel)
        : m_page(std::move(page))
        , m_pictures(pictures)
        , m_cancel(cancel)
        , m_session(cancel)
        , m_turn(Engine::instance().renderSlots(), m_session, cancel)
        , m_encoding(Engine::instance().renderSlots())
    {}

    EngineError extract(std::size_t pageIndex, Pass pass)
    {
        EngineError error;
        if (!m_turn.take()) {
            return cancelledError(PdfBackendError::WriteFailed);
        }
        DocumentSession *session = m_session.borrow(m_page, &error);
        if (session == nullptr) {
            return error;
        }
        if (pageIndex < session->pages()->pageNumbers.size()) {
            error = search(*session, session->pages()->pageNumbers[pageIndex], pass);
        }
        m_session.giveBackUnlessUsable();
        return error;
    }

    [[nodiscard]] qsizetype skipped() const { return m_skipped; }
    EngineError finish() { return m_encoding.finish(); }

private:
    /// Runs `body` on the document within the budget of a page; false when it failed.
    template <typename Body>
    bool run(DocumentSession &session, Body &&body)
    {
        MupdfContext &context = session.reader().context;
        WorkBudget budget = SessionBudgets().page;
        budget.cancelled = &m_cancel.value();
        context.beginWork(budget);
        const bool isDone = context.run(body, nullptr);
        m_isBudgetUsedUp = context.endWork() != BudgetBreach::None;
        if (m_isBudgetUsedUp) {
            session.doubt();
        }
        return isDone;
    }

    EngineError search(DocumentSession &session, int pageNumber, Pass pass)
    {
        const DocumentSession::Reader reader = session.reader();
        ImageSearch search(reader.context, reader.document, m_seen);
        run(session, [&](fz_context *ctx) { enter(ctx, reader, search, pageNumber, pass); });
        while (!m_cancel.isSet() && !m_encoding.hasFailed()) {
            OwnedImage found(reader.context);
            bool isThere = false;
            const bool isRead =
                run(session, [&](fz_context *ctx) { isThere = search.next(ctx, &found.value()); });
            if (m_isBudgetUsedUp || (isRead && !isThere)) {
                break;
            }
            if (isRead) {
                if (EngineError error = take(session, found.value()); error.isError()) {
                    return error;
                }
            }
        }
        return m_cancel.isSet() ? cancelledError(PdfBackendError::WriteFailed) : EngineError{};
    }

    static void enter(fz_context *ctx, const DocumentSession::Reader &reader, ImageSearch &search,
                      int pageNumber, Pass pass)
    {
        // A reference, which knows the number.
        pdf_obj *page = pdf_new_indirect(ctx, reader.document, pageNumber, 0);
        fz_try(ctx)
        {
            reader.colourSpaces.prepare(reader.document, page);
            if (pass == Pass::Pages) {
                search.enterPage(ctx, page);
            } else {
                search.enterResources(ctx, page);
            }
        }
        fz_always(ctx)
        {
            pdf_drop_obj(ctx, page);
        }
        fz_catch(ctx)
        {
            fz_rethrow(ctx);
        }
    }

    EngineError take(DocumentSession &session, const FoundImage &found)
    {
        const auto image = std::make_shared<EmbeddedImage>();
        const PdfPictureFormat format = m_pictures.target().format;
        if (found.isDamaged || !extractImage(session, found, format, m_cancel, image.get())) {
            ++m_skipped;
            return {};
        }
        auto created = std::make_unique<PictureFile>(m_pictures.target());
        PictureFile *picture = created.get();
        if (EngineError error = picture->open(); error.isError()) {
            return error;
        }
        m_pictures.add(std::move(created));
        m_encoding.begin([picture, image, cancel = m_cancel] {
            if (image->isFile) {
                return picture->writeWhole(image->file);
            }
            picture->begin(image->form);
            const QSize size = image->form.size;
            const EngineError error = picture->addRows(
                image->pixels.get(), qsizetype{size.width()} * bytesOf(image->form.pixels),
                size.height(), cancel);
            return error.isError() ? error : picture->finish();
        });
        return {};
    }

    const PdfSourcePage m_page;
    PictureSet &m_pictures;
    const PdfCancelFlag m_cancel;
    SeenObjects m_seen;
    qsizetype m_skipped = 0;
    bool m_isBudgetUsedUp = false;
    KeptSession m_session;
    RenderTurn m_turn;
    SideWork m_encoding; ///< The last one: what it works on outlives it.
};

} // namespace

EngineError makeEmbeddedPictures(const QString &path, PictureSet &pictures,
                                 const PdfCancelFlag &cancel, qsizetype *skipped)
{
    PictureSource source;
    EngineError error = openPictureSource(path, cancel, &source);
    if (error.isError()) {
        return error;
    }
    EmbeddedPictures work(source.page, pictures, cancel);
    const auto count = static_cast<std::size_t>(source.pageSizes.size());
    for (const Pass pass : {Pass::Pages, Pass::Resources}) {
        for (std::size_t i = 0; i < count && !error.isError(); ++i) {
            error = work.extract(i, pass);
        }
    }
    const EngineError ofEncoding = work.finish();
    *skipped = work.skipped();
    return error.isError() ? error : ofEncoding;
}

} // namespace pdfcore
