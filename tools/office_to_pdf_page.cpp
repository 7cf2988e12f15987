// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/office_to_pdf_page.h"

OfficeToPdfPage::OfficeToPdfPage(QWidget *parent)
    : ToolPage(kIconPath, tr("Office转为PDF"), tr("将 Word、PowerPoint 和 Excel 文件转换为 PDF"),
               parent)
{}
