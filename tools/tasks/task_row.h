// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

/// A submitted task, as its page hands it to the task list.
struct TaskRow
{
    QString id;
    /// A TaskType.
    qint32 type = 0;
    /// What was asked for: a file or a folder, which need not exist yet.
    QString outputPath;
};
