// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/tool_page.h"

/// A page of a tool that is shown and does nothing yet: whoever starts it is told so.
class OfficeToolPage : public ToolPage
{
    Q_OBJECT

protected:
    /// Takes the panel. `dropText` is what the drop zone says.
    OfficeToolPage(ToolOptionsPanel *panel, const QString &dropText, QWidget *parent);

private:
    void explain();
};
