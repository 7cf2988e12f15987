// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_encry_page.h"

PdfEncryPage::PdfEncryPage(QWidget *parent)
    : FileInputPage(kIconPath, tr("加密PDF"), tr("用密码保护 PDF 文件。"), parent)
{}
