// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_to_office_page.h"

PdfToOfficePage::PdfToOfficePage(QWidget *parent)
    : ToolPage(kIconPath, tr("PDF转为Office"), tr("将 PDF 转换为可编辑的 Office 文档。"), parent)
{}
