// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/thumbnails/thumbnail_delegate.h"

#include "pdf/viewer/cards/page_card_geometry.h"

#include <QPainter>

ThumbnailDelegate::ThumbnailDelegate(const PageThumbnailStore &thumbnails, const PageHover &hover,
                                     QObject *parent)
    : PageCardDelegate(thumbnails, hover, parent)
    , m_actions{{QIcon(kPreviewIcon)}, {QIcon(kRotateIcon)}, {QIcon(kDeleteIcon), true}}
{}

ThumbnailDelegate::~ThumbnailDelegate() = default;

void ThumbnailDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    const PdfPageRecord *record = recordOf(index);
    if (record == nullptr) {
        return;
    }
    const ThumbnailRowGeometry row = thumbnailRowGeometry(option.rect);
    PageCardPainter::CardState state = cardState(option, index);
    state.selected = option.state.testFlag(QStyle::State_Selected);

    PageCardPainter::drawCard(*painter, row.card, state);
    drawPage(*painter, row.imageArea, *record, tr("正在生成缩略图…"), option.font, state);
    PageCardPainter::drawCaption(*painter, row.caption, QString::number(index.row() + 1),
                                 option.font, state);
    drawActionBar(*painter, row.actionStrip, m_actions, state);
}

QSize ThumbnailDelegate::sizeHint(const QStyleOptionViewItem & /*option*/,
                                  const QModelIndex & /*index*/) const
{
    return {kThumbnailBox.width(), kThumbnailRowHeight};
}

QString ThumbnailDelegate::toolTipAt(QPoint point, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    if (index.row() != hover().row) {
        return {};
    }
    switch (barPartAt(thumbnailRowGeometry(option.rect).actionStrip, PartCount, point)) {
    case PreviewPart:
        return tr("预览页面");
    case RotatePart:
        return tr("向右旋转页面");
    case DeletePart:
        return tr("删除页面");
    default:
        return {};
    }
}
