// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/office_tool_page.h"

#include "tools/files/file_drop_zone_widget.h"
#include "tools/options/tool_options_panel.h"
#include "widgets/modern_message_box.h"

OfficeToolPage::OfficeToolPage(ToolOptionsPanel *panel, const QString &dropText, QWidget *parent)
    : ToolPage(new FileDropZoneWidget, panel, parent)
{
    auto *dropZone = findChild<FileDropZoneWidget *>();
    dropZone->setMinimumSize(0, 0);
    dropZone->setText(dropText);
    // A button that does nothing, and files that vanish, would pass for a fault.
    connect(panel, &ToolOptionsPanel::startClicked, this, &OfficeToolPage::explain);
    connect(dropZone, &FileDropZoneWidget::fileSelected, this, &OfficeToolPage::explain,
            Qt::QueuedConnection);
}

void OfficeToolPage::explain()
{
    ModernMessageBox::showMessage(this, ModernMessageBox::Information, tr("暂不支持"),
                                  tr("此版本尚不能转换 Office 文件。"), QString());
}
