// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class ModernComboBox;
class QWidget;
struct TaskRequest;

/// Where the results of a tool go: one of some folders, or one that the user chooses.
namespace OutputLocation {

/// The values of the items in ModernComboBox::kLocationRole, which are stable.
enum Mode : int {
    SourceFolder = 0, ///< Beside the source file.
    Desktop = 1,
    ProgramFolder = 2, ///< The program's own folder among the documents.
    Chosen = 3,
};

/// Whether the folder of the source is among the places.
enum class Source { Offered, LeftOut };

/// A box with the places, of which the first is chosen; `parent` owns it.
[[nodiscard]] ModernComboBox *createBox(Source source, QWidget *parent);

/// Writes the place that is chosen into a request: TaskRequest::useSourceFolder and, unless that is
/// set, TaskRequest::outputPath. Creates the program's folder when that is the place.
void fill(const ModernComboBox &box, TaskRequest &request);

} // namespace OutputLocation
