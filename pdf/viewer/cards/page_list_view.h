// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/cards/drag_scroller.h"
#include "pdf/viewer/cards/page_card_geometry.h"

#include <QListView>
#include <QPoint>

#include <optional>

class PdfDocumentModel;

/// A list of the pages of a document, in which pages are moved by dragging.
///
/// Only drags from views of the same document are taken; the model's own drop carries them out.
/// The rows stand in one column, or as a derived class places them.
/// While a page is dragged, the view scrolls near its edges and when the wheel is turned.
/// However many rows change in one pass of the event loop, they are laid out once. Pages run from
/// left to right in every interface language.
class PageListView : public QListView
{
    Q_OBJECT

public:
    explicit PageListView(QWidget *parent = nullptr);
    ~PageListView() override;

    /// The document shown, null for none.
    [[nodiscard]] PdfDocumentModel *documentModel() const;
    /// The page that is being dragged out of this view, 0 for none.
    [[nodiscard]] PdfPageId draggedPage() const { return m_draggedPage; }
    /// The page on which a mouse button is down, 0 for none.
    [[nodiscard]] PdfPageId pressedPage() const { return m_pressedPage; }
    /// How often the rows were laid out so far.
    [[nodiscard]] qint64 layoutCount() const { return m_layoutCount; }

    void doItemsLayout() override;

signals:
    /// The rows may stand elsewhere now.
    void laidOut();
    /// A page starts to be dragged out of this view.
    void dragStarted();
    /// That drag is over, wherever the page was dropped, if at all.
    void dragEnded();
    /// The current row was changed with the keyboard.
    void rowChosenByKey(int row);

protected:
    /// The gap into which a page dragged to `point` of the viewport would go.
    [[nodiscard]] virtual PageDropTarget dropTargetAt(QPoint point) const;

    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

protected slots:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    [[nodiscard]] bool isOwnPageDrag(const QDropEvent &event) const;
    /// The target at the event's position, if the page in the event would really move there.
    [[nodiscard]] std::optional<PageDropTarget> dropTargetOf(const QDropEvent &event) const;
    [[nodiscard]] std::optional<PageDropTarget> dropTargetFor(PdfPageId id, QPoint point) const;
    void forgetDrag();
    void setPressedPage(PdfPageId id);
    void setDropTarget(const std::optional<PageDropTarget> &target);
    [[nodiscard]] QPixmap dragPixmap(const QModelIndex &index) const;
    void postLayout();

    /// A page that is held over this view.
    struct HeldPage
    {
        PdfPageId id;
        QPoint point; ///< Of the viewport.
    };

    DragScroller m_dragScroller{this};
    std::optional<HeldPage> m_heldPage;
    std::optional<PageDropTarget> m_dropTarget;
    PdfPageId m_pressedPage = 0;
    QPoint m_pressPoint;
    bool m_leftIsDown = false; ///< Since a press that this view has seen, and no drag came of it.
    PdfPageId m_draggedPage = 0;
    qint64 m_layoutCount = 0;
    bool m_layoutPosted = false;
};
