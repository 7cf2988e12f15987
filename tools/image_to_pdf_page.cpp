// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/image_to_pdf_page.h"

ImageToPdfPage::ImageToPdfPage(QWidget *parent)
    : ToolPage(kIconPath, tr("图像转PDF"), tr("将图像合成为 PDF 文件。"), parent)
{}
