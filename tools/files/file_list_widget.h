// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

class FileListItem;
class QListWidget;
class QListWidgetItem;

/// The files that were chosen for a tool: rows that can be dragged into another order and closed,
/// with a button that adds files and one that removes all.
///
/// Paths are kept as they were given. It takes no drops; the page does.
class FileListWidget final : public QWidget
{
    Q_OBJECT

public:
    explicit FileListWidget(QWidget *parent = nullptr);

    /// The name filter and the title of the file dialog.
    QString filter;
    QString caption;

    /// The paths of all rows from top to bottom.
    [[nodiscard]] QStringList files() const;
    /// Returns the paths of all rows from top to bottom and empties the list, without a signal.
    QStringList takeFiles();
    /// Shows files again that were just taken, where the list was scrolled to then.
    void putBack(const QStringList &files);

public slots:
    /// Appends each path in order; one that is there already, letter by letter, is left out.
    /// Emits nothing.
    void onAddFile(const QStringList &paths);
    void clearFiles();

signals:
    /// Rows were removed; `count` are left.
    void fileCountChange(int count);
    /// A drag has ended on another row. The list is empty then; `files` are its paths in their new
    /// order.
    void fileOrderChanged(const QStringList &files);

private:
    void chooseFiles();
    void addRow(QListWidgetItem *entry);
    void remove(FileListItem *row);
    [[nodiscard]] QListWidgetItem *entryOf(const FileListItem *row) const;
    void beginDrag(FileListItem *row);
    void moveDragged(QPoint globalPosition);
    void scrollOn();
    void finishDrag();
    void forgetDrag();
    [[nodiscard]] int targetRow(QPoint position) const;

    QListWidget *m_list;
    QListWidgetItem *m_dragged = nullptr;
    QPointer<FileListItem> m_draggedRow;
    int m_dragStart = -1;
    QPoint m_pointer; ///< Where the drag is, in global coordinates.
    QTimer m_scrollTimer;
    int m_takenPosition = 0; ///< Where the list was scrolled to when its files were taken.
};
