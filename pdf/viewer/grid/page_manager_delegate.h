// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/cards/page_card_delegate.h"

#include <QSize>

class PageManagerListView;

/// Paints the cells of the page grid.
class PageManagerDelegate final : public PageCardDelegate
{
    Q_OBJECT

public:
    PageManagerDelegate(const PageThumbnailStore &thumbnails, const PageHover &hover,
                        PageManagerListView *list);
    ~PageManagerDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const override;

protected:
    [[nodiscard]] QString toolTipAt(QPoint point, const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const override;

private:
    const PageManagerListView &m_list;
    QList<PageCardPainter::Action> m_actions;
};
