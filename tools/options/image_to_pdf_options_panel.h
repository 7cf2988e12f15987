// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

class SelectButton;
class SwitchButton;

/// The options of making PDF files of images: the pages, and whether all images go into one file.
class ImageToPdfOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit ImageToPdfOptionsPanel(QWidget *parent = nullptr);

    [[nodiscard]] TaskRequest buildRequest() const override;
    /// Whether all images go into one file.
    [[nodiscard]] bool isSinglePdf() const;

private:
    ModernComboBox *m_pageSize;
    ModernComboBox *m_margin;
    SelectButton *m_portrait;
    SelectButton *m_landscape;
    SwitchButton *m_singlePdf;
};
