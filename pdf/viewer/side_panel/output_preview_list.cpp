// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/side_panel/output_preview_list.h"

#include "widgets/icon_paths.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QHelpEvent>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int kMinimumHeight = 104;
constexpr int kRowHeight = 52;
constexpr int kRowPadding = 8;
constexpr int kIconSide = 24;
constexpr int kNameHeight = 20;
constexpr int kContentsHeight = 16;
constexpr int kHintPadding = 12;
constexpr int kNamePixelSize = 13;
constexpr int kContentsPixelSize = 12;
constexpr int kRadius = 6;
/// No line shows more characters, and no tool tip is of use with more.
constexpr int kMaximumLength = 512;

constexpr int kHintRole = Qt::UserRole;

// %1 background, %2 border, %3 focus
constexpr QLatin1String kStyleSheet{R"(
OutputPreviewList {
    background: %1; border: 1px solid %2; border-radius: 8px; padding: 3px; outline: none;
}
OutputPreviewList:focus { border-color: %3; }
)"};

QFont sizedFont(QFont font, int pixelSize)
{
    font.setPixelSize(pixelSize);
    return font;
}

/// What an item says.
struct Entry
{
    QString fileName;
    QString contents;
};

Entry entryOf(const QModelIndex &index)
{
    const QString text = index.data().toString();
    // The name of a file may hold a line feed itself.
    const qsizetype end = text.lastIndexOf(u'\n');
    return {text.left(end), text.mid(end + 1).left(kMaximumLength)};
}

/// Where the parts of a row are.
struct Row
{
    QRect icon;
    QRect fileName;
    QRect contents;
};

Row rowOf(const QRect &item, Qt::LayoutDirection direction)
{
    const QRect inner = item.adjusted(kRowPadding, kRowPadding, -kRowPadding, -kRowPadding);
    Row row;
    row.icon =
        QRect(inner.left(), item.top() + (item.height() - kIconSide) / 2, kIconSide, kIconSide);
    const int left = row.icon.right() + 1 + kRowPadding;
    const int width = std::max(inner.right() + 1 - left, 0);
    row.fileName = QRect(left, inner.top(), width, kNameHeight);
    row.contents = QRect(left, inner.top() + kNameHeight, width, kContentsHeight);
    for (QRect *part : {&row.icon, &row.fileName, &row.contents}) {
        *part = QStyle::visualRect(direction, item, *part);
    }
    return row;
}

class OutputFileDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        if (!index.data(kHintRole).toBool()) {
            return {0, kRowHeight};
        }
        const auto *list = qobject_cast<const QListWidget *>(option.widget);
        const int width = list != nullptr ? list->viewport()->width() : option.rect.width();
        const QRect room(0, 0, std::max(width - 2 * kHintPadding, 1), QWIDGETSIZE_MAX);
        const int height = QFontMetrics(sizedFont(option.font, kNamePixelSize))
                               .boundingRect(room, Qt::TextWordWrap, index.data().toString())
                               .height();
        return {0, height + 2 * kHintPadding};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const int flags = static_cast<int>(leadingSide(option.direction));
        if (index.data(kHintRole).toBool()) {
            paintHint(*painter, option, index, flags);
        } else {
            paintFile(*painter, option, index, flags);
        }
        painter->restore();
    }

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override
    {
        if (event->type() != QEvent::ToolTip) {
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        }
        if (index.data(kHintRole).toBool() || !isElided(option, index)) {
            QToolTip::hideText();
            return true;
        }
        const Entry entry = entryOf(index);
        // Not to be taken for formatted text; and only such is broken into lines.
        QToolTip::showText(event->globalPos(),
                           QStringLiteral("<p>%1<br>%2</p>")
                               .arg(entry.fileName.toHtmlEscaped(), entry.contents.toHtmlEscaped()),
                           view->viewport(), option.rect);
        return true;
    }

private:
    static void paintHint(QPainter &painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index, int flags)
    {
        painter.setFont(sizedFont(option.font, kNamePixelSize));
        painter.setPen(index.data(Qt::ForegroundRole).value<QBrush>().color());
        painter.drawText(
            option.rect.adjusted(kHintPadding, kHintPadding, -kHintPadding, -kHintPadding),
            flags | Qt::TextWordWrap, index.data().toString());
    }

    static void paintFile(QPainter &painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index, int flags)
    {
        const Entry entry = entryOf(index);
        const Row row = rowOf(option.rect, option.direction);
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Theme::accentTint);
            painter.drawRoundedRect(option.rect, kRadius, kRadius);
        }
        QIcon(kPdfFileIcon).paint(&painter, row.icon);

        const int lineFlags = flags | Qt::AlignVCenter | Qt::TextSingleLine;
        painter.setFont(sizedFont(option.font, kNamePixelSize));
        painter.setPen(Theme::ink);
        // A file name runs from left to right in every language.
        painter.drawText(row.fileName, lineFlags | Qt::TextForceLeftToRight,
                         painter.fontMetrics().elidedText(entry.fileName, Qt::ElideMiddle,
                                                          row.fileName.width()));
        painter.setFont(sizedFont(option.font, kContentsPixelSize));
        painter.setPen(Theme::textSecondary);
        painter.drawText(
            row.contents, lineFlags,
            painter.fontMetrics().elidedText(entry.contents, Qt::ElideRight, row.contents.width()));
    }

    static bool isElided(const QStyleOptionViewItem &option, const QModelIndex &index)
    {
        const Entry entry = entryOf(index);
        const Row row = rowOf(option.rect, option.direction);
        const QFontMetrics name(sizedFont(option.font, kNamePixelSize));
        const QFontMetrics contents(sizedFont(option.font, kContentsPixelSize));
        return name.horizontalAdvance(entry.fileName) > row.fileName.width() ||
               contents.horizontalAdvance(entry.contents) > row.contents.width();
    }
};

} // namespace

OutputPreviewList::OutputPreviewList(QWidget *parent)
    : QListWidget(parent)
{
    setItemDelegate(new OutputFileDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setResizeMode(QListView::Adjust);
    setFocusPolicy(Qt::TabFocus);
    setFrameShape(QFrame::NoFrame);
    setStyleSheet(
        QString(kStyleSheet).arg(Theme::white.name(), Theme::border.name(), Theme::accent.name()) %
        scrollBarStyleSheet({.minimumLength = 24}));
}

OutputPreviewList::~OutputPreviewList() = default;

void OutputPreviewList::showFiles(const QStringList &texts)
{
    if (m_showsHint) {
        clear();
        m_showsHint = false;
    }
    while (count() > texts.size()) {
        delete takeItem(count() - 1);
    }
    for (int row = 0; row < count(); ++row) {
        item(row)->setText(texts.at(row));
    }
    while (count() < texts.size()) {
        auto *file = new QListWidgetItem(texts.at(count()), this);
        file->setFlags(Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
    }
}

void OutputPreviewList::showHint(const QString &text)
{
    clear();
    m_showsHint = true;
    auto *hint = new QListWidgetItem(text, this);
    hint->setFlags(Qt::ItemIsEnabled | Qt::ItemNeverHasChildren);
    hint->setData(kHintRole, true);
    hint->setForeground(Theme::textMuted);
}

QSize OutputPreviewList::minimumSizeHint() const
{
    return {0, kMinimumHeight};
}
