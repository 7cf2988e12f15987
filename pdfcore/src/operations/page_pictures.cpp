// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/page_pictures.h"

#include "pdfcore/src/operations/picture_set.h"
#include "pdfcore/src/operations/picture_source.h"
#include "pdfcore/src/operations/render_turn.h"
#include "pdfcore/src/operations/side_work.h"
#include "pdfcore/src/render/page_bands.h"
#include "pdfcore/src/session/engine.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace pdfcore {

namespace {

constexpr double kPointsPerInch = 72;

/// Pixels of the largest picture that is there as a whole; others come in bands.
constexpr qint64 kMostWholePixels = qint64{1} << 24;

/// How much of what there may be is used at most.
constexpr double kWithin = 0.999;

constexpr double kMostSide = PdfPictureExport::kMostPixelsOfSide;

class PagePictures
{
public:
    PagePictures(const PdfSourcePage &page, PictureSet &pictures, const PdfCancelFlag &cancel)
        : m_page(page)
        , m_pictures(pictures)
        , m_cancel(cancel)
        , m_session(cancel)
        , m_turn(Engine::instance().renderSlots(), m_session, cancel)
        , m_encoding(Engine::instance().renderSlots())
    {}

    EngineError make(int pageIndex, const PictureForm &form)
    {
        EngineError error;
        if (!m_turn.take()) {
            return cancelledError(PdfBackendError::RenderFailed);
        }
        m_page.pageIndex = pageIndex;
        DocumentSession *session = m_session.borrow(m_page, &error);
        if (session == nullptr) {
            return error;
        }
        auto created = std::make_unique<PictureFile>(m_pictures.target());
        PictureFile *picture = created.get();
        error = picture->open();
        if (error.isError()) {
            return error;
        }
        // Kept by the set from now on, since it is still being written when the next page is begun.
        m_pictures.add(std::move(created));
        picture->begin(form);
        error = render(*session, form.size, *picture);
        m_session.giveBackUnlessUsable();
        if (m_cancel.isSet()) {
            return cancelledError(PdfBackendError::RenderFailed);
        }
        if (error.code == PdfBackendError::RenderFailed) {
            error.message =
                QStringLiteral("Page %1: %2").arg(QString::number(pageIndex + 1), error.message);
        }
        if (!error.isError()) {
            m_encoding.begin([picture] { return picture->finish(); });
        }
        return error;
    }

    [[nodiscard]] bool hasFailed() const { return m_encoding.hasFailed(); }
    EngineError finish() { return m_encoding.finish(); }

private:
    EngineError render(DocumentSession &session, QSize size, PictureFile &picture)
    {
        EngineError error;
        if (qint64{size.width()} * size.height() <= kMostWholePixels) {
            const QImage image =
                session.render(m_page.pageIndex, 0, size, &error, &m_cancel.value());
            if (!error.isError()) {
                encode(picture, image);
            }
            return error;
        }
        PageBands bands(size, 0);
        session.renderBands(
            m_page.pageIndex, 0, bands,
            [&](const QImage &band, int /*top*/) {
                encode(picture, band.copy());
                return !m_cancel.isSet() && !m_encoding.hasFailed();
            },
            &error, &m_cancel.value());
        return error;
    }

    void encode(PictureFile &picture, const QImage &rows)
    {
        m_encoding.begin([&picture, rows, cancel = m_cancel] {
            return picture.addRows(rows.constBits(), rows.bytesPerLine(), rows.height(), cancel);
        });
    }

    PdfSourcePage m_page;
    PictureSet &m_pictures;
    const PdfCancelFlag m_cancel;
    KeptSession m_session;
    RenderTurn m_turn;
    SideWork m_encoding; ///< The last one: what it works on outlives it.
};

} // namespace

PictureForm pagePictureForm(QSizeF pageSize, int dpi)
{
    const double width = pageSize.width() / kPointsPerInch;
    const double height = pageSize.height() / kPointsPerInch;
    const double most =
        std::min(std::sqrt(static_cast<double>(PdfPictureExport::kMostPixels) / (width * height)),
                 kMostSide / std::max(width, height));
    PictureForm form;
    form.dpi = dpi;
    if (most < dpi) {
        // Whole if it can be; and so that rounding does not go beyond.
        form.dpi = most > 1 ? std::floor(most * kWithin) : most * kWithin;
    }
    const auto pixels = [&form](double inches) {
        return static_cast<int>(std::clamp(std::round(inches * form.dpi), 1.0, kMostSide));
    };
    form.size = QSize(pixels(width), pixels(height));
    return form;
}

EngineError makePagePictures(const QString &path, int dpi, PictureSet &pictures,
                             const PdfCancelFlag &cancel)
{
    if (dpi <= 0) {
        return {PdfBackendError::RenderFailed,
                QStringLiteral("There have to be some pixels per inch.")};
    }
    PictureSource source;
    EngineError error = openPictureSource(path, cancel, &source);
    if (error.isError()) {
        return error;
    }
    if (source.pageSizes.isEmpty()) {
        return {PdfBackendError::InvalidDocument, QStringLiteral("The file has no pages.")};
    }
    PagePictures work(source.page, pictures, cancel);
    for (qsizetype i = 0; i < source.pageSizes.size() && !error.isError() && !work.hasFailed();
         ++i) {
        error = work.make(static_cast<int>(i), pagePictureForm(source.pageSizes.at(i), dpi));
    }
    const EngineError ofEncoding = work.finish();
    return error.isError() ? error : ofEncoding;
}

} // namespace pdfcore
