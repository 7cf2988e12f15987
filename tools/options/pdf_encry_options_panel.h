// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

class PasswordField;
class SaveOption;

/// The options of encrypting: the password, typed twice, and whether the source is replaced. The
/// messages below the fields are advice and stop nothing.
class PdfEncryOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfEncryOptionsPanel(QWidget *parent = nullptr);

    [[nodiscard]] TaskRequest buildRequest() const override;
    /// Whether both fields hold the same text.
    [[nodiscard]] bool passwordsMatch() const;

private:
    void onFirstChanged();
    void onSecondChanged();

    PasswordField *m_first;
    PasswordField *m_second;
    SaveOption *m_save;
};
