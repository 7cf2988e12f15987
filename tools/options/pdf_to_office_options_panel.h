// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

/// The options of turning PDF files into Office documents.
class PdfToOfficeOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfToOfficeOptionsPanel(QWidget *parent = nullptr);
};
