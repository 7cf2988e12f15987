// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_merge_page.h"

PdfMergePage::PdfMergePage(QWidget *parent)
    : ToolPage(kIconPath, tr("合并PDF"), tr("将多个 PDF 文件合并为一个。"), parent)
{}
