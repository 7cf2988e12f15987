// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_merge_page.h"

PdfMergePage::PdfMergePage(QWidget *parent)
    : ToolPage(QStringLiteral(":/res/icons/modern/merge-big.png"), tr("合并PDF"),
               tr("将多个 PDF 文件合并为一个。"), parent)
{}
