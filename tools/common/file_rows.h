// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class QListWidget;

namespace FileRows {

/// How high the rows of files and of tasks are, in logical pixels.
inline constexpr int kHeight = 80;

/// Makes a list show rows, which are widgets, and nothing else: no frame, no selection, no focus.
void prepare(QListWidget &list);

} // namespace FileRows
