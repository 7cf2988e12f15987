// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

class QHBoxLayout;
class QListWidget;
class QWidget;
class QListWidgetItem;

namespace FileRows {

/// How high the rows of files and of tasks are, in logical pixels.
inline constexpr int kHeight = 80;

/// Arranges the buttons of a list above it, with a line between; `owner` takes both.
void arrange(QWidget &owner, QHBoxLayout *buttons, QListWidget *list);

/// Makes a list show rows, which are widgets, and nothing else: no frame, no selection, no focus.
void prepare(QListWidget &list);

/// Appends an entry for each text, which is its Qt::UserRole data. The caller gives them their
/// rows, before the list is laid out.
QList<QListWidgetItem *> append(QListWidget &list, const QStringList &data);

} // namespace FileRows
