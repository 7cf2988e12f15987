// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/office_to_pdf_options_panel.h"

OfficeToPdfOptionsPanel::OfficeToPdfOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("Office转为PDF"), tr("转换"), OutputLocation::Source::Offered, parent)
{
    addNote(tr("将 Word、PowerPoint 和 Excel 文件转换为 PDF"));
}
