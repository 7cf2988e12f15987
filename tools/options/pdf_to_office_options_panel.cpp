// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_to_office_options_panel.h"

PdfToOfficeOptionsPanel::PdfToOfficeOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("PDF转为Office"), tr("转换"), OutputLocation::Source::Offered, parent)
{
    addHeading(tr("选择文件格式"));
    addChoice(QStringLiteral("officeFormatBox"),
              {tr("Word (*.docx)"), tr("Excel (*.xlsx)"), tr("PowerPoint (*.pptx)")}, 0);
}
