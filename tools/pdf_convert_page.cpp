// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_convert_page.h"

PdfConvertPage::PdfConvertPage(QWidget *parent)
    : FileInputPage(kIconPath, tr("PDF 转为图像"), tr("将 PDF 的每一页保存为图像。"), parent)
{}
