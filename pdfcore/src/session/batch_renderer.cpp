// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/batch_renderer.h"

#include "pdfcore/render_threads.h"
#include "pdfcore/src/base/source_page.h"
#include "pdfcore/src/render/page_painter.h"
#include "pdfcore/src/session/engine.h"
#include "pdfcore/src/session/kept_session.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace pdfcore {

namespace {

/// Pixels of the largest image that is made at once, 1.5 GiB of memory. Larger ones come in bands.
constexpr qint64 kMaxPixels = qint64{1} << 29;

QImage renderBlank(QSize size, EngineError *outcome)
{
    QImage image(size, kPageImageFormat);
    if (image.isNull()) {
        *outcome = noMemoryFor(size);
        return {};
    }
    image.fill(Qt::white);
    return image;
}

/// Renders pages one after another, keeping a document open while pages of the same file follow.
class BatchRenderer
{
public:
    explicit BatchRenderer(PdfCancelFlag cancel)
        : m_cancel(std::move(cancel))
        , m_session(m_cancel)
    {}

    QImage render(const PdfSourcePage &page, QSize size, EngineError *outcome)
    {
        *outcome = {};
        if (m_cancel.isSet()) {
            *outcome = cancelledError(PdfBackendError::RenderFailed);
            return {};
        }
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
        if (isBlankPage(page)) {
            return renderBlank(size, outcome);
        }
        DocumentSession *session = m_session.borrow(page, outcome);
        if (session == nullptr) {
            return {};
        }
        QImage image =
            session->render(page.pageIndex, page.rotation, size, outcome, &m_cancel.value());
        m_session.giveBackUnlessUsable();
        return image;
    }

private:
    const PdfCancelFlag m_cancel;
    KeptSession m_session;
};

/// A batch that several threads work off together. The lists are large enough before they start,
/// and each thread writes to elements of its own.
class SharedBatch
{
public:
    SharedBatch(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &pages,
                const QList<QSize> &sizes, QList<QImage> &images, QStringList &messages)
        : m_cancel(cancel)
        , m_pages(pages)
        , m_sizes(sizes)
        , m_images(images.data())
        , m_messages(messages.data())
    {}

    /// Renders what nobody has begun, to the end.
    void work()
    {
        BatchRenderer renderer(m_cancel);
        while (renderNext(renderer)) {
        }
    }

    /// The same as long as nobody waits for the slot.
    void help()
    {
        BatchRenderer renderer(m_cancel);
        while (!Engine::instance().renderSlots().isAwaited() && renderNext(renderer)) {
        }
    }

    /// Fails what nobody has begun.
    void giveUp()
    {
        for (qsizetype i = m_next++; i < m_pages.size(); i = m_next++) {
            m_messages[i] = cancelledError(PdfBackendError::RenderFailed).message;
        }
    }

private:
    /// False when everything has been begun.
    bool renderNext(BatchRenderer &renderer)
    {
        const qsizetype i = m_next++;
        if (i >= m_pages.size()) {
            return false;
        }
        try {
            EngineError outcome;
            m_images[i] = renderer.render(m_pages.at(i), m_sizes.value(i), &outcome);
            m_messages[i] = outcome.message;
        } catch (const std::exception &exception) {
            m_images[i] = {};
            m_messages[i] = QString::fromUtf8(exception.what());
        }
        return true;
    }

    const PdfCancelFlag m_cancel;
    const QList<PdfSourcePage> &m_pages;
    const QList<QSize> &m_sizes;
    QImage *m_images;
    QString *m_messages;
    std::atomic<qsizetype> m_next{0};
};

} // namespace

void renderBatch(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &pages,
                 const QList<QSize> &targetSizes, QList<QImage> &images, QStringList &messages)
{
    SharedBatch batch(cancel, pages, targetSizes, images, messages);
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    if (pages.isEmpty() || !renderSlots.take(cancel)) {
        batch.giveUp();
        return;
    }
    const RenderSlot slot(renderSlots);
    std::vector<std::thread> helpers;
    const auto most =
        static_cast<std::size_t>(std::min<qsizetype>(pages.size(), kMostRenderThreads) - 1);
    helpers.reserve(most);
    while (helpers.size() < most && renderSlots.tryTake()) {
        try {
            helpers.emplace_back([&batch, &renderSlots] {
                const RenderSlot own(renderSlots);
                batch.help();
            });
        } catch (const std::system_error &) {
            // Without another thread the work takes longer.
            renderSlots.giveBack();
            break;
        }
    }
    batch.work();
    for (std::thread &helper : helpers) {
        helper.join();
    }
}

QImage renderOne(const PdfSourcePage &page, QSize size, EngineError *outcome)
{
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    renderSlots.force();
    const RenderSlot slot(renderSlots);
    return BatchRenderer(PdfCancelFlag()).render(page, size, outcome);
}

} // namespace pdfcore
