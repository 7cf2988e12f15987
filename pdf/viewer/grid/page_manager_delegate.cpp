// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_manager_delegate.h"

#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/grid/page_grid_hit.h"
#include "pdf/viewer/grid/page_manager_list_view.h"

#include <QPainter>

PageManagerDelegate::PageManagerDelegate(const PageThumbnailStore &thumbnails,
                                         const PageHover &hover, PageManagerListView *list)
    : PageCardDelegate(thumbnails, hover, list)
    , m_list(*list)
    , m_actions{{QIcon(kPreviewIcon)},
                {QIcon(kDuplicateIcon)},
                {QIcon(kRotateIcon)},
                {QIcon(kDeleteIcon), true}}
{}

PageManagerDelegate::~PageManagerDelegate() = default;

void PageManagerDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    const PdfPageRecord *record = recordOf(index);
    if (record == nullptr) {
        return;
    }
    const PageCellGeometry cell = pageCellGeometry(option.rect, m_list.metrics().thumbnail);
    PageCardPainter::CardState state = cardState(option, index);
    state.selected = record->selected;
    state.current = index == m_list.currentIndex();
    const bool onBox = state.hovered && hover().onSelectionBox;

    PageCardPainter::drawCard(*painter, cell.card, state);
    drawPage(*painter, cell.thumbnail, *record, tr("正在生成预览…"), option.font, state);
    PageCardPainter::drawCaption(*painter, cell.caption, QString::number(index.row() + 1),
                                 option.font, state);
    const bool isBoxEnabled = state.enabled && !state.dragged;
    PageCardPainter::drawSelectionBox(
        *painter, cell.selectionBox,
        {onBox, onBox && hover().pressed, record->selected, isBoxEnabled});
    drawActionBar(*painter, cell.actionBar, m_actions, state);
}

QSize PageManagerDelegate::sizeHint(const QStyleOptionViewItem & /*option*/,
                                    const QModelIndex & /*index*/) const
{
    return m_list.metrics().cell;
}

QString PageManagerDelegate::toolTipAt(QPoint point, const QStyleOptionViewItem & /*option*/,
                                       const QModelIndex &index) const
{
    const PageGridHit hit = m_list.hitAt(point, hover().row);
    switch (hit.kind) {
    case PageGridHit::InsertZone:
        return tr("在此处插入页面");
    case PageGridHit::SplitZone:
        if (m_list.areSplitPointsFixed()) {
            return {};
        }
        return m_list.isSplitBefore(hit.row) ? tr("取消此处的拆分") : tr("在此处拆分");
    case PageGridHit::SelectionBox:
        return recordOf(index)->selected ? tr("取消选择页面") : tr("选择页面");
    case PageGridHit::Action:
        break;
    case PageGridHit::Nothing:
    default:
        return {};
    }
    switch (hit.part) {
    case PageGridHit::PreviewPart:
        return tr("预览页面");
    case PageGridHit::DuplicatePart:
        return tr("复制页面");
    case PageGridHit::RotatePart:
        return tr("向右旋转页面");
    default:
        return tr("删除页面");
    }
}
