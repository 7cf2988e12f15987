// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class ElidedLabel;
class QLabel;
class QPushButton;
struct TaskRow;

/// A row of TaskListWidget: what a task makes, how it stands, and buttons that open the result.
class TaskListItem final : public QWidget
{
    Q_OBJECT

public:
    explicit TaskListItem(QWidget *parent = nullptr);

    [[nodiscard]] QString id() const { return m_id; }
    /// The path of the result without needless parts.
    [[nodiscard]] QString path() const { return m_path; }

    /// Shows a task that was just submitted.
    void setTask(const TaskRow &task);
    /// Shows what `path` names. A missing PDF file passes for a file, anything else that is missing
    /// for a folder.
    void setPath(const QString &path);
    /// Shows a TaskStatus; other numbers mean nothing.
    void setStatus(int status);

    /// The rules for rows, for the style sheet of the list.
    [[nodiscard]] static QString rowStyleSheet();

private:
    [[nodiscard]] QString folder() const;
    void openFile() const;
    void openFolder() const;
    void showState(const QString &text, const QColor &color, const QString &iconPath);

    QString m_id;
    QString m_path;
    QLabel *m_icon;
    ElidedLabel *m_name;
    QLabel *m_size;
    QLabel *m_status;
    QLabel *m_stateIcon;
    QPushButton *m_openFile;
    QPushButton *m_openFolder;
};
