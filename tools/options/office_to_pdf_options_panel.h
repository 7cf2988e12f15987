// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

/// The options of turning Office documents into PDF files.
class OfficeToPdfOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit OfficeToPdfOptionsPanel(QWidget *parent = nullptr);
};
