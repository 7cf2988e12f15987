#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/page_card_delegate.h"
#include "pdf/viewer/page_thumbnail_store.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <optional>

class PageListView;
class PdfDocumentModel;
class PdfInsertDropZone;
class PdfRenderManager;
class QModelIndex;
class QMouseEvent;

/// The column of page thumbnails beside the document view, with a place to insert PDF files.
///
/// Pages are counted from zero. The panel edits nothing but the order of the pages, by dragging;
/// every other edit is a request. Thumbnails are made for the rows in view first and then for the
/// rest of the document, as far as the memory for them goes. Model and manager belong to the
/// caller.
class PdfThumbnailPanel final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfThumbnailPanel(QWidget *parent = nullptr);
    ~PdfThumbnailPanel() override;

    /// The thumbnails held at present.
    [[nodiscard]] const PageThumbnailStore &thumbnails() const { return m_thumbnails; }
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
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    /// Rows from the first to the last; none if the last is before the first.
    struct RowRange
    {
        int first = 0;
        int last = -1;
    };

    void buildInterface();
    void connectParts();
    [[nodiscard]] int pageCount() const;
    [[nodiscard]] bool canRequest() const;

    void reset();
    void onRowsChanged();
    void onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                       const QList<int> &roles);

    // Thumbnails.
    void schedulePass();
    void runPass();
    void reconcileRows();
    void restoreCurrentRow();
    [[nodiscard]] int rowAtHeight(int y, int towards) const;
    [[nodiscard]] RowRange visibleRows() const;
    [[nodiscard]] PageThumbnailStore::WantedPage wantedPage(int row) const;
    void requestVisibleRows();
    void scheduleGeneration(int delay);
    void generateBatch();
    void trimThumbnails();
    void updateRow(PdfPageId id);

    // Pointer.
    [[nodiscard]] int stripPartAt(int row, QPoint point) const;
    void movePointer(std::optional<QPoint> point);
    void setHover(const PageHover &hover);
    [[nodiscard]] bool pressStrip(const QMouseEvent &event);
    [[nodiscard]] bool releaseStrip();

    PageThumbnailStore m_thumbnails;
    PageHover m_hover;
    QPointer<PdfDocumentModel> m_model;
    PageListView *m_list;
    PdfInsertDropZone *m_dropZone;
    QTimer m_generationTimer;
    /// The next row that the background pass looks at.
    int m_generationCursor = 0;
    RowRange m_requestedRows;
    PdfPageId m_currentPage = 0;
    std::optional<QPoint> m_pointer;
    bool m_stripPressed = false;
    bool m_rowsChanged = false;
    bool m_passPosted = false;
    bool m_shown = false;
};
