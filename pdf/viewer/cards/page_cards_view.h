// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/cards/page_card_delegate.h"
#include "pdf/viewer/cards/page_thumbnail_store.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <optional>

class PageListView;
class PdfDocumentModel;
class QModelIndex;
class QMouseEvent;

/// A view of the document's pages as cards, around a list of them.
///
/// What the page grid and the thumbnail panel have in common: however much changes in one pass of
/// the event loop, thumbnails are requested once; they follow their pages when rows come, go, move
/// or are turned; and a press on a part of a card that acts by itself is kept from the list. Model
/// and manager belong to the caller.
class PageCardsView : public QWidget
{
    Q_OBJECT

public:
    explicit PageCardsView(QWidget *parent = nullptr);
    ~PageCardsView() override;

    /// The thumbnails held at present.
    [[nodiscard]] const PageThumbnailStore &thumbnails() const { return m_thumbnails; }

protected:
    /// Rows from the first to the last; none if the last is before the first.
    struct RowRange
    {
        int first = 0;
        int last = -1;

        [[nodiscard]] bool contains(int row) const { return row >= first && row <= last; }
        [[nodiscard]] int count() const { return last - first + 1; }
    };

    /// Takes the list that shows the cards, once.
    void useList(PageListView *list);
    /// Deletes the list, which paints from members of the view. The first thing to be done by the
    /// destructor of a derived class.
    void removeList();
    /// Shows the rows of `model` without thumbnails; null for none.
    void useModel(PdfDocumentModel *model);
    /// The document shown, null for none.
    [[nodiscard]] PdfDocumentModel *documentModel() const;
    [[nodiscard]] int pageCount() const;

    // Thumbnails.
    [[nodiscard]] PageThumbnailStore &thumbnailStore() { return m_thumbnails; }
    /// Has requestThumbnails() called soon.
    void schedulePass();
    /// Notes that other rows are there, and has them looked at in the next pass.
    void onRowsChanged();
    /// The thumbnails are in order again after rows have changed.
    virtual void settleRows() = 0;
    /// Requests what is missing, if it can be had now.
    virtual void requestThumbnails() = 0;
    /// Thumbnails that were there are missing now.
    virtual void missThumbnails() { schedulePass(); }
    /// The rows whose thumbnails are kept and brought up to date first.
    [[nodiscard]] RowRange requestedRows() const { return m_requestedRows; }
    void setRequestedRows(RowRange rows) { m_requestedRows = rows; }
    /// The page of a row, at the size at which it fits into `box` logical pixels.
    [[nodiscard]] PageThumbnailStore::WantedPage wantedPage(int row, QSize box) const;
    /// The pages of those of the rows that are there.
    [[nodiscard]] QList<PageThumbnailStore::WantedPage> wantedPages(RowRange rows, QSize box) const;

    // Pointer.
    [[nodiscard]] const PageHover &hover() const { return m_hover; }
    void setHover(const PageHover &hover);
    /// Where the pointer is in the viewport of the list; nothing when it is elsewhere.
    [[nodiscard]] std::optional<QPoint> pointer() const { return m_pointer; }
    void movePointer(std::optional<QPoint> point);
    /// Shows what is under the pointer now.
    virtual void updateHover() = 0;
    /// Acts on a press of the left button. Where it concerns more than the list, takePress() is to
    /// be called first and true to be returned.
    [[nodiscard]] virtual bool pressAt(QPoint point) = 0;
    void takePress();
    /// Whether the button is down on what was pressed, as long as the pointer stays on it.
    [[nodiscard]] bool isStillPressed(bool isOnTheSame);

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                       const QList<int> &roles);
    void runPass();
    void trimThumbnails();
    void updateCard(PdfPageId id);
    [[nodiscard]] bool onPress(const QMouseEvent &event);
    [[nodiscard]] bool onMove(const QMouseEvent &event);
    [[nodiscard]] bool onRelease();

    PageThumbnailStore m_thumbnails;
    PageHover m_hover;
    QPointer<PdfDocumentModel> m_model;
    PageListView *m_list = nullptr;
    RowRange m_requestedRows;
    std::optional<QPoint> m_pointer;
    /// The last press was not left to the list.
    bool m_pressTaken = false;
    PdfPageId m_pressTakenOn = 0; ///< The page of the last press, if it was taken.
    /// A mouse button is down on what was pressed.
    bool m_pressed = false;
    bool m_rowsChanged = false;
    bool m_passPosted = false;
};
