// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/cards/page_cards_view.h"

#include <QPoint>
#include <QStringList>
#include <QTimer>

class PageListView;
class PdfDocumentModel;
class PdfInsertDropZone;
class PdfRenderManager;

/// The column of page thumbnails beside the document view, with a place to insert PDF files.
///
/// Pages are counted from zero. The panel edits nothing but the order of the pages, by dragging;
/// every other edit is a request. Thumbnails are made for the rows in view first and then for the
/// rest of the document, as far as the memory for them goes. Model and manager belong to the
/// caller.
class PdfThumbnailPanel final : public PageCardsView
{
    Q_OBJECT

public:
    explicit PdfThumbnailPanel(QWidget *parent = nullptr);
    ~PdfThumbnailPanel() override;

    [[nodiscard]] QSize sizeHint() const override;

    /// Shows the rows of `model`; null for none.
    void setModel(PdfDocumentModel *model);
    /// Takes images from `manager`; null for none.
    void setRenderManager(PdfRenderManager *manager);
    /// Marks a page and brings it into view. Ignored out of range.
    void setCurrentPage(int row);
    /// Asks for missing thumbnails once more. To be called after the render manager's work was
    /// cancelled while the document stays.
    void restartRequests();

signals:
    void pageActivated(int page);
    void insertFilesRequested(const QStringList &files, int beforeRow);
    void chooseInsertFilesRequested(int beforeRow);
    void previewPageRequested(PdfPageId pageId);
    void rotatePageRequested(PdfPageId pageId);
    void deletePageRequested(PdfPageId pageId);

protected:
    void settleRows() override;
    void requestThumbnails() override;
    void missThumbnails() override;
    void updateHover() override;
    [[nodiscard]] bool pressAt(QPoint point) override;

    void showEvent(QShowEvent *event) override;

private:
    void buildInterface();
    void connectParts();

    // Mark.
    void restoreCurrentRow();
    void markCurrentPage();
    /// Marks a row without bringing it into view.
    void markRow(int row);

    // Thumbnails.
    [[nodiscard]] bool canRequest() const;
    [[nodiscard]] int rowAtHeight(int y, int towards) const;
    [[nodiscard]] RowRange visibleRows() const;
    void requestVisibleRows();
    void scheduleGeneration(int delay);
    void generateBatch();

    // Pointer.
    [[nodiscard]] int stripPartAt(int row, QPoint point) const;
    void showHover(const PageHover &hover);

    PageListView *m_list;
    PdfInsertDropZone *m_dropZone;
    QTimer m_generationTimer;
    /// The next row that the background pass looks at.
    int m_generationCursor = 0;
    PdfPageId m_currentPage = 0;
    bool m_shown = false;
};
