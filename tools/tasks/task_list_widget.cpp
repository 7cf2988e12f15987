// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/tasks/task_list_widget.h"

#include "taskcenter/task_center.h"
#include "tools/common/file_rows.h"
#include "tools/tasks/task_list_item.h"
#include "tools/tasks/task_row.h"
#include "widgets/icon_button.h"
#include "widgets/plain_tool_tip.h"
#include "widgets/theme.h"

#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>

namespace {

constexpr QSize kRestartSize(110, 40);
constexpr int kRestartIconSize = 16;

} // namespace

TaskListWidget::TaskListWidget(QWidget *parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
{
    auto *restartButton = new IconButton(tr("重来"), this);
    restartButton->setObjectName(QStringLiteral("taskRestartButton"));
    restartButton->setFillColor(Theme::white);
    restartButton->setHoverFillColor(Theme::hover);
    restartButton->setBorderColor(Theme::border);
    restartButton->setTextColor(Theme::textSecondary);
    restartButton->setIconPixmap(QStringLiteral(":/res/icons/modern/restart.png"),
                                 kRestartIconSize);
    restartButton->setFixedSize(kRestartSize);
    connect(restartButton, &IconButton::clicked, this, &TaskListWidget::restart);

    FileRows::prepare(*m_list);
    m_list->setObjectName(QStringLiteral("taskList"));
    m_list->setStyleSheet(m_list->styleSheet() + TaskListItem::rowStyleSheet());

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(restartButton);
    FileRows::arrange(*this, buttons, m_list);
}

void TaskListWidget::addTask(const TaskRow &task)
{
    QListWidgetItem *entry = FileRows::append(*m_list, {task.id}).constFirst();
    auto *row = new TaskListItem;
    row->setTask(task);
    row->setToolTip(plainToolTip(QDir::toNativeSeparators(row->path())));
    m_list->setItemWidget(entry, row);
    m_rowOfTask.insert(task.id, row);
}

void TaskListWidget::updateStatus(const QString &id, int status)
{
    TaskListItem *row = m_rowOfTask.value(id);
    if (row == nullptr) {
        return;
    }
    const TaskCenter &service = TaskCenter::instance();
    if (status == static_cast<int>(TaskStatus::Completed)) {
        // Where a folder was asked for, or the name was taken meanwhile, only the service knows
        // what the result is called; twenty rows that all name the desktop would tell nothing.
        if (const QString result = service.resultPath(id); !result.isEmpty()) {
            row->setPath(result);
        }
        row->setToolTip(plainToolTip(QDir::toNativeSeparators(row->path())));
    }
    row->setStatus(status);
    if (status == static_cast<int>(TaskStatus::Failed)) {
        row->setToolTip(plainToolTip(service.errorMessage(id)));
    }
}

QList<TaskListItem *> TaskListWidget::rows() const
{
    QList<TaskListItem *> all;
    for (int row = 0; row < m_list->count(); ++row) {
        all.append(qobject_cast<TaskListItem *>(m_list->itemWidget(m_list->item(row))));
    }
    return all;
}

void TaskListWidget::restart()
{
    m_list->clear();
    m_rowOfTask.clear();
    emit sigRestart();
}
