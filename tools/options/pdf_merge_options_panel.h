// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

/// The options of merging: where the result goes, which is never the folder of a source, as there
/// are several.
class PdfMergeOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfMergeOptionsPanel(QWidget *parent = nullptr);
};
