// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_compress_page.h"

PdfCompressPage::PdfCompressPage(QWidget *parent)
    : FileInputPage(kIconPath, tr("压缩PDF"), tr("减小 PDF 文件的体积，便于发送和保存。"), parent)
{}
