// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/reading/page_image_loader.h"
#include "pdf/viewer/reading/page_layout.h"

#include <QAbstractScrollArea>
#include <QList>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QSizeF>

#include <optional>

class PdfDocumentModel;
class PdfRenderManager;
class QModelIndex;

/// The reading surface of an open document: all pages in one column, scrolled continuously.
///
/// Pages are counted from zero. The zoom is the number of logical pixels per point; it is either
/// chosen or derived from the size of the viewport, which it then follows. The view shows the rows
/// of a page model and never edits them; images come from a render manager, for the pages in and
/// near the viewport only. Model and manager belong to the caller.
///
/// Many changes of the model in one pass of the event loop are laid out once, at its end or as
/// soon as something is asked of the view.
class PdfDocumentView final : public QAbstractScrollArea
{
    Q_OBJECT

public:
    enum class FitMode : qint32 {
        Manual = 0, ///< The zoom was chosen.
        Width = 1,  ///< The current page's width fills the viewport.
        Page = 2,   ///< The current page fits into the viewport.
    };

    explicit PdfDocumentView(QWidget *parent = nullptr);
    ~PdfDocumentView() override;

    [[nodiscard]] double zoomFactor() const { return m_zoomFactor; }
    [[nodiscard]] int currentPage() const { return m_currentPage; }
    [[nodiscard]] FitMode fitMode() const { return m_fitMode; }

    /// Shows the rows of `model`; null for none.
    void setModel(PdfDocumentModel *model);
    /// Takes images from `manager`; null for none.
    void setRenderManager(PdfRenderManager *manager);
    /// Lets the left button drag the document instead of clicking pages.
    void setHandToolEnabled(bool enabled);
    /// Asks for missing images once more. To be called after the render manager's work was
    /// cancelled while the document stays.
    void restartRequests();
    /// Makes a page current without scrolling to it, until the reader scrolls. Ignored out of
    /// range.
    void makeCurrent(int page);

    /// How often somebody has asked for a page so far.
    [[nodiscard]] quint64 visits() const { return m_visits; }

    /// Where the current page stands on the screen.
    struct ReadingPlace
    {
        PageAnchor middle; ///< What is in the middle of the viewport, seen from the page.
        int top = 0;       ///< Of the page, in the viewport.
    };
    /// As it was last laid out; changes of the model that are not laid out yet do not count.
    /// Nothing without pages.
    [[nodiscard]] std::optional<ReadingPlace> readingPlace() const;
    enum class PlaceFor {
        SamePage,  ///< Which may have another size or number now.
        Neighbour, ///< Of a page that is gone: begins where that began, but not above the viewport.
    };
    /// Brings a page to where the current one was, and makes it current. In a fit mode the fit is
    /// applied again. Ignored out of range.
    void restorePlace(int page, const ReadingPlace &place, PlaceFor whom);

    /// Asks for the pages in view now, not at the end of this pass of the event loop. For a view on
    /// the screen whose size will not change in this pass.
    void requestPagesInView();

signals:
    void currentPageChanged(int page);
    void zoomFactorChanged(double factor);
    /// The left button was pressed on a page.
    void pageClicked(int page);
    /// The finished image of the current page was painted; once after each reset of the model.
    void firstPagePainted();

public slots:
    /// Chooses a zoom, which ends a fit mode; it is brought into kMinimumZoom to kMaximumZoom.
    void setZoomFactor(double factor);
    void zoomIn();
    void zoomOut();
    void fitWidth();
    void fitPage();
    /// Brings the upper edge of a page into view and makes it current. Ignored out of range.
    void goToPage(int page);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] int pageCount() const;
    [[nodiscard]] const PdfPageRecord *recordAt(int row) const;
    [[nodiscard]] QList<QSizeF> displaySizes() const;
    [[nodiscard]] QPoint scrollOffset() const;
    /// What scroll bars that are hidden now would take of the viewport.
    [[nodiscard]] QSize hiddenScrollBars() const;
    /// The viewport in content coordinates.
    [[nodiscard]] QRect visibleRegion() const;
    [[nodiscard]] QSize targetSizeAt(int row) const;
    [[nodiscard]] bool isFirstPageFinished() const;

    void onModelReset();
    void onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                       const QList<int> &roles);

    // Layout. A position is kept as the fraction of the content above the viewport.
    [[nodiscard]] double scrollFraction() const;
    [[nodiscard]] std::optional<double> pendingPosition() const;
    void invalidateLayout();
    void ensureLayout();
    void layoutPages(std::optional<double> keptPosition);
    void setScrollRanges();
    /// The zoom that fits `page` in the present fit mode; 1.0 without pages.
    [[nodiscard]] double fitZoomOf(int page) const;
    /// Stores and announces the zoom that fits `page` if the view is in a fit mode; true if it
    /// differs from the zoom before.
    bool adoptFitZoom(int page);
    void adoptZoom(double zoom);

    void scrollTo(QPoint offset);
    void updateCurrentPage();
    void setCurrentPage(int page);

    // Images.
    void schedulePass();
    void postPass();
    void runPass();
    void adoptRenderScale();
    [[nodiscard]] PageImageLoader::Demand demand() const;
    void updatePage(PdfPageId id);

    [[nodiscard]] QRect pageOnViewport(int row) const;
    [[nodiscard]] const PageImageLoader::HeldImage *heldImage(int row) const;
    /// Whether nothing but the image is seen where the page is.
    [[nodiscard]] bool isCovered(int row) const;
    void drawPage(QPainter &painter, int row) const;

    [[nodiscard]] bool startsPanning(const QMouseEvent &event) const;
    void showToolCursor();
    void zoomByWheel(const QWheelEvent &event);

    QPointer<PdfDocumentModel> m_model;
    PageImageLoader m_images;
    PageLayout m_layout;
    double m_zoomFactor = 1.0;
    double m_renderScale = kMinimumRenderScale;
    FitMode m_fitMode = FitMode::Width;
    int m_currentPage = 0;
    std::optional<double> m_keptPosition;
    bool m_layoutDirty = false;
    bool m_scrolled = false;
    bool m_pageUnknown = false;
    quint64 m_visits = 0;
    bool m_inProgrammaticScroll = false;
    bool m_passPosted = false;
    bool m_shown = false;
    bool m_firstPageAnnounced = false;
    bool m_handTool = false;
    bool m_panning = false;
    QPoint m_lastPanPosition;
};
