// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>

class ElidedLabel;
class QLabel;

/// A row of FileListWidget: a chosen file, which can be dragged and closed.
///
/// A drag is no drag and drop of the system: the row tells where the pointer is, and the list moves
/// it.
class FileListItem final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool dragging READ isDragging)

public:
    explicit FileListItem(QWidget *parent = nullptr);

    [[nodiscard]] QString path() const { return m_path; }
    /// Shows the name and the size of the file at `path`; a missing file has the size 0.
    void setPath(const QString &path);

    [[nodiscard]] bool isDragging() const { return m_dragging; }
    /// Shows whether the row is being dragged.
    void setDragging(bool dragging);

    /// The rules for rows, for the style sheet of the list: one sheet for a thousand rows.
    [[nodiscard]] static QString rowStyleSheet();

signals:
    /// The file is to leave the list. Hides QWidget::close().
    void close();
    void dragStarted();
    void dragMoved(QPoint globalPosition);
    void dragFinished();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_path;
    bool m_pressed = false;
    bool m_dragging = false;
    QPoint m_pressPosition;
    QLabel *m_handle;
    QLabel *m_icon;
    ElidedLabel *m_name;
    QLabel *m_size;
};
