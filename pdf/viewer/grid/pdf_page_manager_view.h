// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/cards/page_cards_view.h"
#include "pdf/viewer/grid/page_grid_hit.h"
#include "pdf/viewer/grid/page_split_points.h"

#include <QList>
#include <QPoint>
#include <QTimer>

class PageGridZoomControl;
class PageManagerListView;
class PdfDocumentModel;
class PdfRenderManager;

/// All pages of the document as a grid, to choose, move, preview, duplicate, turn and delete them,
/// and to say where to insert or to split.
///
/// The view edits nothing but the order of the pages, by dragging, which of them are chosen, and
/// its own split points; every other edit is a request. Model and manager belong to the caller.
class PdfPageManagerView final : public PageCardsView
{
    Q_OBJECT

public:
    explicit PdfPageManagerView(QWidget *parent = nullptr);
    ~PdfPageManagerView() override;

    /// Shows the rows of `model`; null for none. The split points of another model are forgotten.
    void setModel(PdfDocumentModel *model);
    /// Takes images from `manager`; null for none.
    void setRenderManager(PdfRenderManager *manager);
    /// Takes a value of PdfWorkspaceMode.
    void setWorkspaceMode(int mode);
    /// Splits before every page but the first, whatever was chosen; the choice comes back when it
    /// is switched off.
    void setEveryPageSplit(bool enabled);
    /// Makes a page current and brings it into view. Ignored out of range.
    void showPage(int row);
    /// Asks for missing thumbnails once more. To be called after the render manager's work was
    /// cancelled while the document stays.
    void restartRequests();

signals:
    void previewPageRequested(PdfPageId pageId);
    void duplicatePageRequested(PdfPageId pageId);
    void rotatePageRequested(PdfPageId pageId);
    void deletePageRequested(PdfPageId pageId);
    void insertAtRequested(int beforeRow, QPoint globalPosition);
    /// The rows before which the document is split, ascending. Comes too when they change because
    /// pages were moved, added or removed.
    void splitPointsChanged(QList<int> beforeRows);

protected:
    void settleRows() override;
    void requestThumbnails() override;
    void updateHover() override;
    [[nodiscard]] bool pressAt(QPoint point) override;

    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildInterface();
    void connectParts();
    void placeZoomControl();
    void setZoom(int percent);

    void reportSplitPoints();
    void reportMovedSplitPoints();

    // Thumbnails.
    /// Requests the pages in view soon and the ones nearby after a rest.
    void scheduleRequests();
    void onRest();
    [[nodiscard]] bool canRequest() const;
    void requestVisiblePages();
    void requestNearbyPages();

    // Pointer.
    void showHit(const PageGridHit &hit, int row, bool pressed);
    void requestAction(int part, PdfPageId id);
    void toggleSplitBefore(PdfPageId id);

    PageSplitPoints m_splitPoints;
    QList<int> m_reportedSplitRows;
    PageGridHit m_hoveredHit;
    PageManagerListView *m_list;
    PageGridZoomControl *m_zoomControl;
    /// Runs while the grid is being scrolled or zoomed; at its end, what was put off is requested.
    QTimer m_restTimer;
    bool m_zooming = false;
    bool m_documentReset = false;
};
