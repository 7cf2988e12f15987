// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_delegate.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/cards/page_list_view.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

PageCardDelegate::PageCardDelegate(const PageThumbnailStore &thumbnails, const PageHover &hover,
                                   QObject *parent)
    : QStyledItemDelegate(parent)
    , m_thumbnails(thumbnails)
    , m_hover(hover)
{}

PageCardDelegate::~PageCardDelegate() = default;

bool PageCardDelegate::editorEvent(QEvent * /*event*/, QAbstractItemModel * /*model*/,
                                   const QStyleOptionViewItem & /*option*/,
                                   const QModelIndex & /*index*/)
{
    // The base class would toggle the check state at a place where no check box is drawn.
    return false;
}

bool PageCardDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view,
                                 const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const QString text = index.isValid() ? toolTipAt(event->pos(), option, index) : QString();
    QToolTip::showText(event->globalPos(), text, view);
    return !text.isEmpty();
}

const PdfPageRecord *PageCardDelegate::recordOf(const QModelIndex &index)
{
    const auto *document = qobject_cast<const PdfDocumentModel *>(index.model());
    return document != nullptr ? document->pageAt(index.row()) : nullptr;
}

PageCardPainter::CardState PageCardDelegate::cardState(const QStyleOptionViewItem &option,
                                                       const QModelIndex &index) const
{
    const auto *list = qobject_cast<const PageListView *>(option.widget);
    const PdfPageRecord *record = recordOf(index);
    PageCardPainter::CardState state;
    state.hovered = index.row() == m_hover.row;
    state.pressed = list != nullptr && record != nullptr && list->pressedPage() == record->id;
    state.dragged = list != nullptr && record != nullptr && list->draggedPage() == record->id;
    state.enabled = option.state.testFlag(QStyle::State_Enabled);
    return state;
}

void PageCardDelegate::drawPage(QPainter &painter, const QRect &box, const PdfPageRecord &record,
                                const QString &waitingText, const QFont &font,
                                const PageCardPainter::CardState &state) const
{
    const QSize size = thumbnailTargetSize(record.displaySize(), box.size(),
                                           painter.device()->devicePixelRatioF());
    if (const QImage *image = m_thumbnails.image(record)) {
        PageCardPainter::drawPage(painter, box, size, *image, state);
        return;
    }
    const QString text = m_thumbnails.hasFailed(record.id) ? tr("无法显示此页面") : waitingText;
    PageCardPainter::drawWaitingPage(painter, box, size, text, font, state);
}

void PageCardDelegate::drawActionBar(QPainter &painter, const QRect &bar,
                                     const QList<PageCardPainter::Action> &actions,
                                     const PageCardPainter::CardState &state) const
{
    if (state.hovered && state.enabled) {
        PageCardPainter::drawActionBar(painter, bar, actions, m_hover.part,
                                       m_hover.pressed ? m_hover.part : -1);
    }
}
