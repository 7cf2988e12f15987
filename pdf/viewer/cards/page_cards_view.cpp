// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_cards_view.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/cards/page_list_view.h"
#include "pdf/viewer/common/view_changes.h"

#include <QMouseEvent>

#include <algorithm>
#include <limits>
#include <utility>

PageCardsView::PageCardsView(QWidget *parent)
    : QWidget(parent)
{
    connect(&m_thumbnails, &PageThumbnailStore::imageArrived, this, [this](PdfPageId id) {
        trimThumbnails();
        updateCard(id);
    });
    connect(&m_thumbnails, &PageThumbnailStore::imageFailed, this, &PageCardsView::updateCard);
    connect(&m_thumbnails, &PageThumbnailStore::roomAvailable, this, &PageCardsView::schedulePass);
}

PageCardsView::~PageCardsView() = default;

void PageCardsView::useList(PageListView *list)
{
    m_list = list;
    m_list->viewport()->installEventFilter(this);
    connect(m_list, &PageListView::dragStarted, this, [this] { movePointer(std::nullopt); });
}

void PageCardsView::removeList()
{
    // Its last events concern nobody.
    m_list->viewport()->removeEventFilter(this);
    delete m_list;
}

void PageCardsView::useModel(PdfDocumentModel *model)
{
    if (m_model != nullptr) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    m_model = model;
    m_list->setModel(model);
    m_thumbnails.clear();
    m_requestedRows = {};
    m_rowsChanged = false;
    m_pressed = false;
    if (model == nullptr) {
        return;
    }
    connect(model, &QAbstractItemModel::modelReset, this, &PageCardsView::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsInserted, this, &PageCardsView::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &PageCardsView::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsMoved, this, &PageCardsView::onRowsChanged);
    connect(model, &QAbstractItemModel::dataChanged, this, &PageCardsView::onDataChanged);
}

PdfDocumentModel *PageCardsView::documentModel() const
{
    return m_model;
}

int PageCardsView::pageCount() const
{
    return m_model != nullptr ? m_model->rowCount() : 0;
}

void PageCardsView::schedulePass()
{
    if (!m_passPosted) {
        m_passPosted = true;
        QMetaObject::invokeMethod(this, &PageCardsView::runPass, Qt::QueuedConnection);
    }
}

void PageCardsView::onRowsChanged()
{
    m_rowsChanged = true;
    schedulePass();
}

PageThumbnailStore::WantedPage PageCardsView::wantedPage(int row, QSize box) const
{
    const PdfPageRecord &record = *m_model->pageAt(row);
    return {record, thumbnailTargetSize(record.displaySize(), box, devicePixelRatioF())};
}

QList<PageThumbnailStore::WantedPage> PageCardsView::wantedPages(RowRange rows, QSize box) const
{
    QList<PageThumbnailStore::WantedPage> pages;
    for (int row = std::max(rows.first, 0); row <= std::min(rows.last, pageCount() - 1); ++row) {
        pages.append(wantedPage(row, box));
    }
    return pages;
}

void PageCardsView::setHover(const PageHover &hover)
{
    if (hover != m_hover) {
        m_hover = hover;
        m_list->viewport()->update();
    }
}

void PageCardsView::movePointer(std::optional<QPoint> point)
{
    m_pointer = point;
    updateHover();
}

void PageCardsView::takePress()
{
    m_pressTaken = true;
    m_pressed = true;
}

bool PageCardsView::isStillPressed(bool isOnTheSame)
{
    m_pressed = m_pressed && isOnTheSame;
    return m_pressed;
}

bool PageCardsView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (isScreenChange(*event)) {
        missThumbnails();
    }
    return handled;
}

bool PageCardsView::eventFilter(QObject *watched, QEvent *event)
{
    if (m_list == nullptr || watched != m_list->viewport()) {
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseMove:
        return onMove(*static_cast<QMouseEvent *>(event));
    case QEvent::Leave:
        movePointer(std::nullopt);
        break;
    case QEvent::Resize:
        // A list whose pages keep their places is not laid out anew when more of them are seen.
        schedulePass();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return onPress(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return onRelease();
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void PageCardsView::onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                  const QList<int> &roles)
{
    if (!changesPageImages(roles)) {
        return;
    }
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        const PdfPageRecord &record = *m_model->pageAt(row);
        if (m_requestedRows.contains(row)) {
            m_thumbnails.turn(record);
        } else {
            m_thumbnails.forget(record.id);
        }
    }
    missThumbnails();
}

void PageCardsView::runPass()
{
    m_passPosted = false;
    if (std::exchange(m_rowsChanged, false)) {
        m_thumbnails.reconcile([this](PdfPageId id) {
            return m_model != nullptr ? m_model->pageAt(m_model->rowForPageId(id)) : nullptr;
        });
        settleRows();
    }
    updateHover();
    requestThumbnails();
}

void PageCardsView::trimThumbnails()
{
    if (!m_thumbnails.isOverBudget()) {
        return;
    }
    m_thumbnails.trim([this](PdfPageId id) {
        const int row = m_model != nullptr ? m_model->rowForPageId(id) : -1;
        if (row < 0) {
            return std::numeric_limits<int>::max();
        }
        return std::max({m_requestedRows.first - row, row - m_requestedRows.last, 0});
    });
}

void PageCardsView::updateCard(PdfPageId id)
{
    const int row = m_model != nullptr ? m_model->rowForPageId(id) : -1;
    if (m_requestedRows.contains(row)) {
        m_list->viewport()->update(m_list->visualRect(m_model->index(row)));
    }
}

bool PageCardsView::onPress(const QMouseEvent &event)
{
    m_pressTaken = false;
    if (event.button() != Qt::LeftButton || m_model == nullptr) {
        return false;
    }
    const QPoint point = event.position().toPoint();
    const PdfPageRecord *page = m_model->pageAt(m_list->indexAt(point).row());
    const PdfPageId id = page != nullptr ? page->id : 0;
    const PdfPageId takenOn = std::exchange(m_pressTakenOn, 0);
    if (event.type() == QEvent::MouseButtonDblClick && takenOn != 0 && takenOn != id) {
        // The first press has brought another page under the pointer, by deleting the one that was
        // meant. Nobody has asked for anything to be done to this one.
        takePress();
        return true;
    }
    const bool isTaken = pressAt(point);
    m_pressTakenOn = isTaken ? id : 0;
    return isTaken;
}

bool PageCardsView::onMove(const QMouseEvent &event)
{
    const bool isLeftDown = event.buttons().testFlag(Qt::LeftButton);
    m_pressed = m_pressed && isLeftDown;
    movePointer(event.position().toPoint());
    // The list has not seen the press; what it makes of the move would belong to another one.
    return m_pressTaken && isLeftDown;
}

bool PageCardsView::onRelease()
{
    m_pressed = false;
    updateHover();
    // The list has not seen the press, so the release must not become its click.
    return std::exchange(m_pressTaken, false);
}
