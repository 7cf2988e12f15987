// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_to_office_page.h"

#include "tools/options/pdf_to_office_options_panel.h"

PdfToOfficePage::PdfToOfficePage(QWidget *parent)
    : OfficeToolPage(new PdfToOfficeOptionsPanel, tr("从你的桌面上添加或拖放PDF文件，开始转换。"),
                     parent)
{}
