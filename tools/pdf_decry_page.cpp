// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_decry_page.h"

PdfDecryPage::PdfDecryPage(QWidget *parent)
    : FileInputPage(kIconPath, tr("解锁PDF"), tr("移除 PDF 文件的密码。"), parent)
{}
