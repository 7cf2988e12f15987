// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/cards/page_card_delegate.h"

/// Paints the rows of the thumbnail panel.
class ThumbnailDelegate final : public PageCardDelegate
{
    Q_OBJECT

public:
    /// The parts of the action strip, from left to right.
    enum Part : int {
        PreviewPart,
        RotatePart,
        DeletePart,
        PartCount,
    };

    ThumbnailDelegate(const PageThumbnailStore &thumbnails, const PageHover &hover,
                      QObject *parent);
    ~ThumbnailDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const override;

protected:
    [[nodiscard]] QString toolTipAt(QPoint point, const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const override;

private:
    QList<PageCardPainter::Action> m_actions;
};
