// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/cards/page_card_painter.h"
#include "pdf/viewer/cards/page_thumbnail_store.h"

#include <QStyledItemDelegate>

/// Where the pointer is among the cards of one view.
struct PageHover
{
    /// The row under the pointer, -1 for none.
    int row = -1;
    /// The part of that row's action bar under the pointer, -1 for none.
    int part = -1;
    /// The pointer is on that row's selection box.
    bool onSelectionBox = false;
    /// A button of the mouse went down there and is still down.
    bool pressed = false;

    friend bool operator==(const PageHover &, const PageHover &) = default;
};

/// What the delegates of page cards share. The store and the pointer's place belong to the view.
class PageCardDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    PageCardDelegate(const PageThumbnailStore &thumbnails, const PageHover &hover, QObject *parent);
    ~PageCardDelegate() override;

    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

protected:
    /// Resource paths of the pictures of an action bar's parts.
    static constexpr QLatin1String kPreviewIcon{":/res/icons/pdfviewer/expand.png"};
    static constexpr QLatin1String kDuplicateIcon{":/res/icons/pdfviewer/duplicate.png"};
    static constexpr QLatin1String kRotateIcon{":/res/icons/pdfviewer/rotate-right.png"};
    static constexpr QLatin1String kDeleteIcon{":/res/icons/modern/trash.png"};

    /// What stands at a point of an item; empty where nothing needs an explanation.
    [[nodiscard]] virtual QString toolTipAt(QPoint point, const QStyleOptionViewItem &option,
                                            const QModelIndex &index) const = 0;

    [[nodiscard]] const PageHover &hover() const { return m_hover; }
    [[nodiscard]] static const PdfPageRecord *recordOf(const QModelIndex &index);
    /// The state of a card, but for whether its page is chosen.
    [[nodiscard]] PageCardPainter::CardState cardState(const QStyleOptionViewItem &option,
                                                       const QModelIndex &index) const;
    /// The page in the middle of `box`, or `waitingText` as long as there is no image of it.
    void drawPage(QPainter &painter, const QRect &box, const PdfPageRecord &record,
                  const QString &waitingText, const QFont &font,
                  const PageCardPainter::CardState &state) const;
    /// The action bar, if the card is the hovered one.
    void drawActionBar(QPainter &painter, const QRect &bar,
                       const QList<PageCardPainter::Action> &actions,
                       const PageCardPainter::CardState &state) const;

private:
    const PageThumbnailStore &m_thumbnails;
    const PageHover &m_hover;
};
