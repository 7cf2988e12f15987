// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/files/file_list_widget.h"

#include "tools/common/file_rows.h"
#include "tools/files/file_list_item.h"
#include "widgets/icon_button.h"
#include "widgets/theme.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QListWidget>
#include <QScrollBar>
#include <QSet>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr int kAddHeight = 40;
constexpr int kAddWidth = 120;
constexpr int kAddIconSize = 24;
constexpr int kClearHeight = 35;
constexpr int kClearWidth = 110;
constexpr int kClearIconSize = 16;

/// So near to the upper or lower edge a drag scrolls, by so much with each move, in logical pixels.
constexpr int kScrollMargin = 32;
constexpr int kScrollStep = 12;

/// A drag that rests at an edge scrolls on: by a row each time where it is beyond it, by more the
/// farther it is.
constexpr std::chrono::milliseconds kScrollInterval{40};

} // namespace

FileListWidget::FileListWidget(QWidget *parent)
    : QWidget(parent)
    , filter(tr("PDF 文件 (*.pdf)"))
    , caption(tr("选择 PDF"))
    , m_list(new QListWidget(this))
{
    auto *add = new IconButton(tr("添加文件"), this);
    add->setObjectName(QStringLiteral("fileListAddButton"));
    add->setFillColor(Theme::accent);
    add->setHoverFillColor(Theme::accentHover);
    add->setIconPixmap(QStringLiteral(":/res/icons/modern/addfile.png"), kAddIconSize);
    add->setFixedHeight(kAddHeight);
    add->setFixedWidth(std::max(add->sizeHint().width(), kAddWidth));
    connect(add, &IconButton::clicked, this, &FileListWidget::chooseFiles);

    auto *clear = new IconButton(tr("清除全部"), this);
    clear->setObjectName(QStringLiteral("fileListClearButton"));
    clear->setFillColor(Theme::white);
    clear->setHoverFillColor(Theme::hover);
    clear->setBorderColor(Theme::border);
    clear->setTextColor(Theme::textSecondary);
    clear->setIconPixmap(QStringLiteral(":/res/icons/modern/trash.png"), kClearIconSize);
    clear->setFixedHeight(kClearHeight);
    clear->setFixedWidth(std::max(clear->sizeHint().width(), kClearWidth));
    connect(clear, &IconButton::clicked, this, &FileListWidget::clearFiles);

    FileRows::prepare(*m_list);
    m_list->setObjectName(QStringLiteral("fileList"));
    m_list->setStyleSheet(m_list->styleSheet() + FileListItem::rowStyleSheet());
    m_list->setAutoScroll(true);
    m_list->setAutoScrollMargin(kScrollMargin);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addStretch();
    buttons->addWidget(clear);
    FileRows::arrange(*this, buttons, m_list);

    m_scrollTimer.setInterval(kScrollInterval);
    m_scrollTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_scrollTimer, &QTimer::timeout, this, &FileListWidget::scrollOn);
}

QStringList FileListWidget::files() const
{
    QStringList paths;
    for (int row = 0; row < m_list->count(); ++row) {
        paths.append(m_list->item(row)->data(Qt::UserRole).toString());
    }
    return paths;
}

QStringList FileListWidget::takeFiles()
{
    // The entry of a drag is deleted with the others.
    forgetDrag();
    QStringList paths = files();
    m_takenPosition = m_list->verticalScrollBar()->value();
    m_list->clear();
    return paths;
}

void FileListWidget::putBack(const QStringList &files)
{
    onAddFile(files);
    // The scroll bar learns of the rows when they are laid out.
    m_list->doItemsLayout();
    m_list->verticalScrollBar()->setValue(m_takenPosition);
}

void FileListWidget::onAddFile(const QStringList &paths)
{
    const QStringList shown = files();
    QSet<QString> known(shown.begin(), shown.end());
    QStringList added;
    for (const QString &path : paths) {
        if (!known.contains(path)) {
            known.insert(path);
            added.append(path);
        }
    }
    const QList<QListWidgetItem *> entries = FileRows::append(*m_list, added);
    for (QListWidgetItem *entry : entries) {
        addRow(entry);
    }
}

void FileListWidget::clearFiles()
{
    finishDrag();
    m_list->clear();
    emit fileCountChange(0);
}

void FileListWidget::chooseFiles()
{
    onAddFile(QFileDialog::getOpenFileNames(this, caption, QString(), filter));
}

void FileListWidget::addRow(QListWidgetItem *entry)
{
    auto *row = new FileListItem;
    row->setPath(entry->data(Qt::UserRole).toString());
    m_list->setItemWidget(entry, row);
    connect(row, &FileListItem::dragStarted, this, [this, row] { beginDrag(row); });
    connect(row, &FileListItem::dragMoved, this, &FileListWidget::moveDragged);
    connect(row, &FileListItem::dragFinished, this, &FileListWidget::finishDrag);
    connect(row, &FileListItem::close, this, [this, row] { remove(row); });
}

void FileListWidget::remove(FileListItem *row)
{
    if (row == m_draggedRow) {
        finishDrag();
    }
    // The end of a drag may have emptied the list.
    delete entryOf(row);
    emit fileCountChange(m_list->count());
}

/// The entry that shows the row; null for one that has left the list and is about to be deleted.
QListWidgetItem *FileListWidget::entryOf(const FileListItem *row) const
{
    for (int i = 0; i < m_list->count(); ++i) {
        if (m_list->itemWidget(m_list->item(i)) == row) {
            return m_list->item(i);
        }
    }
    return nullptr;
}

void FileListWidget::beginDrag(FileListItem *row)
{
    // One whose end was never told.
    forgetDrag();
    m_dragged = entryOf(row);
    if (m_dragged == nullptr) {
        return;
    }
    m_draggedRow = row;
    m_dragStart = m_list->row(m_dragged);
    m_pointer = QCursor::pos();
    row->setDragging(true);
    row->raise();
    m_scrollTimer.start();
}

void FileListWidget::moveDragged(QPoint globalPosition)
{
    if (m_dragged == nullptr) {
        return;
    }
    m_pointer = globalPosition;
    QWidget *viewport = m_list->viewport();
    QScrollBar *bar = m_list->verticalScrollBar();
    const int y = viewport->mapFromGlobal(globalPosition).y();
    if (y < kScrollMargin) {
        bar->setValue(bar->value() - kScrollStep);
    } else if (y > viewport->height() - kScrollMargin) {
        bar->setValue(bar->value() + kScrollStep);
    }
    const int target = targetRow(viewport->mapFromGlobal(globalPosition));
    const int current = m_list->row(m_dragged);
    if (target < 0 || current < 0 || current == target) {
        return;
    }
    const int before = target + (target > current ? 1 : 0);
    if (m_list->model()->moveRow(QModelIndex(), current, QModelIndex(), before)) {
        m_list->scrollToItem(m_dragged, QAbstractItemView::EnsureVisible);
        viewport->update();
    }
}

/// Goes on as if the pointer moved while it rests at an edge.
void FileListWidget::scrollOn()
{
    const QWidget *viewport = m_list->viewport();
    const int y = viewport->mapFromGlobal(m_pointer).y();
    if (y < kScrollMargin || y > viewport->height() - kScrollMargin) {
        moveDragged(m_pointer);
    }
}

/// The row that a position in the viewport means; -1 for none.
int FileListWidget::targetRow(QPoint position) const
{
    const QModelIndex index = m_list->indexAt(position);
    if (index.isValid()) {
        return index.row();
    }
    if (position.y() < 0) {
        return 0;
    }
    return position.y() >= m_list->viewport()->height() ? m_list->count() - 1 : -1;
}

/// Ends the drag, if there is one; the list is empty then if it has changed the order.
void FileListWidget::finishDrag()
{
    if (m_dragged == nullptr) {
        return;
    }
    const int row = m_list->row(m_dragged);
    const int start = m_dragStart;
    forgetDrag();
    if (row != start) {
        emit fileOrderChanged(takeFiles());
    }
}

/// Ends the drag, if there is one, wherever it is.
void FileListWidget::forgetDrag()
{
    m_scrollTimer.stop();
    m_dragged = nullptr;
    m_dragStart = -1;
    if (FileListItem *row = std::exchange(m_draggedRow, nullptr); row != nullptr) {
        row->setDragging(false);
    }
}
