// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

class CardRadioButton;
class SaveOption;

/// The options of compressing: how strongly, and whether the source is replaced. No level is chosen
/// at first, which counts as the strong one.
class PdfCompressOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfCompressOptionsPanel(QWidget *parent = nullptr);

    [[nodiscard]] TaskRequest buildRequest() const override;

private:
    CardRadioButton *m_basic;
    SaveOption *m_save;
};
