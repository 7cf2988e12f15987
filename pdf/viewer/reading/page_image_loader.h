// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/page_image_requests.h"
#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/reading/page_image_fitter.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSize>

class PdfRenderManager;

/// Gets the page images of one continuous view from a render manager and holds the ones in use.
///
/// The manager cannot take back what it was asked for. So that leafing quickly through a long
/// document does not queue up work for pages nobody looks at any more, new requests wait while too
/// many results are outstanding that are no longer wanted. Lives on the interface thread.
class PageImageLoader final : public QObject
{
    Q_OBJECT

public:
    /// With more results outstanding that nobody wants any more, even visible pages wait.
    static constexpr int kMaximumStaleRequests = 6;

    /// A finished image and the size in device pixels it was asked for. Soon after it came the
    /// image is the one that PageImageFitter makes of it.
    struct HeldImage
    {
        QImage image;
        QSize size;
    };

    /// A page and the size in device pixels at which it is wanted.
    using WantedPage = PageImageRequests::WantedPage;

    /// What the view wants at one moment, most urgent first.
    struct Demand
    {
        /// Pages in the viewport.
        QList<WantedPage> visible;
        /// Pages likely to come into the viewport next.
        QList<WantedPage> nearby;
        /// Pages whose images may stay; every other image is dropped.
        QSet<PdfPageId> kept;
        /// The sizes in device pixels in which pages are shown, to which their images are brought;
        /// pages that are not among them are left as they come.
        QHash<PdfPageId, QSize> shown;
        quint64 documentRevision = 0;
    };

    explicit PageImageLoader(QObject *parent = nullptr);
    ~PageImageLoader() override;

    /// The image held for a page, null if there is none. Valid until the loader's next change.
    [[nodiscard]] const HeldImage *image(PdfPageId id) const;
    /// Whether the last result of a page was that none can be made, even if it is being requested
    /// again. Forgotten with the page's image.
    [[nodiscard]] bool hasFailed(PdfPageId id) const { return m_failed.contains(id); }

    /// Asks `manager` from now on; null for no one. What was asked of another is forgotten.
    void setRenderManager(PdfRenderManager *manager);
    /// Requests what is missing of `demand`, as far as there is room. A page that failed is left
    /// out until forgetFailures().
    void request(const Demand &demand);
    /// Drops the image of a page and ignores the result of its request.
    void forget(PdfPageId id);
    /// Drops all images and ignores the results of all requests.
    void clear();
    /// Ignores the results of all requests, for instance because they were cancelled.
    void forgetRequests();
    /// Lets pages that failed be requested again.
    void forgetFailures();

signals:
    /// A new image is held for the page.
    void imageArrived(PdfPageId id);
    /// No image could be made of the page.
    void imageFailed(PdfPageId id);
    /// The new image is of a page the last demand did not keep; the next demand decides about it.
    void unkeptImageArrived();
    /// Requests that had to wait may be made now.
    void roomAvailable();

private:
    void acceptImage(PdfPageId id, const QImage &image, QSize size);
    void acceptFailure(PdfPageId id);
    void acceptFitted(PdfPageId id, qint64 originalKey, const QImage &image);
    void fitImage(PdfPageId id);
    void dropImagesExcept(const QSet<PdfPageId> &kept);
    [[nodiscard]] bool isHeld(const WantedPage &page) const;
    void requestMissing(const QList<WantedPage> &pages, quint64 documentRevision, bool hasRoom);

    PageImageRequests m_requests{PdfRenderPurpose::PageView};
    PageImageFitter m_fitter;
    QHash<PdfPageId, HeldImage> m_images;
    QSet<PdfPageId> m_failed;
    QSet<PdfPageId> m_kept;
    QHash<PdfPageId, QSize> m_wantedSizes; ///< What was asked for last.
    QHash<PdfPageId, QSize> m_shownSizes;
    QHash<PdfPageId, qint64> m_beingFitted; ///< Keys of the images.
};
