// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/office_to_pdf_page.h"

#include "tools/options/office_to_pdf_options_panel.h"

OfficeToPdfPage::OfficeToPdfPage(QWidget *parent)
    : OfficeToolPage(new OfficeToPdfOptionsPanel, tr("添加或拖拽文件进行转换。"), parent)
{}
