// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/modern_combo_box.h"

struct TaskRequest;

/// Where the results of a tool go: one of some folders, or one that the user chooses.
class LocationBox final : public ModernComboBox
{
    Q_OBJECT

public:
    /// The values of the items in kModeRole, which are stable.
    enum Mode : int {
        SourceFolder = 0, ///< Beside the source file.
        Desktop = 1,
        ProgramFolder = 2, ///< The program's own folder among the documents.
        Chosen = 3,
    };

    /// Holds the mode of an item.
    static constexpr int kModeRole = Qt::UserRole + 4;
    /// Holds the folder of the item Chosen; its caption while none was chosen.
    static constexpr int kFolderRole = Qt::UserRole + 1;

    /// Whether the source folder is among the places.
    enum class Source { Offered, Left };

    explicit LocationBox(Source source, QWidget *parent = nullptr);

    /// Writes the place into a request: TaskRequest::useSourceFolder and, unless that is set,
    /// TaskRequest::outputPath. Creates the program's folder when that is the place.
    void fill(TaskRequest &request) const;
};
