// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

class SwitchButton;

/// The options of making images of PDF files: their format, and whether the images that a file
/// holds are wanted in place of its pages.
class PdfConvertOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfConvertOptionsPanel(QWidget *parent = nullptr);

    [[nodiscard]] TaskRequest buildRequest() const override;

private:
    ModernComboBox *m_format;
    SwitchButton *m_extract;
};
