// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/options/tool_options_panel.h"

class PasswordField;
class SaveOption;

/// The options of removing a password: the password, and whether the source is replaced.
class PdfDecryOptionsPanel final : public ToolOptionsPanel
{
    Q_OBJECT

public:
    explicit PdfDecryOptionsPanel(QWidget *parent = nullptr);

    [[nodiscard]] TaskRequest buildRequest() const override;

private:
    void onPasswordChanged();

    PasswordField *m_password;
    SaveOption *m_save;
};
