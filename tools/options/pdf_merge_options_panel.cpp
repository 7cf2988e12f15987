// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_merge_options_panel.h"

PdfMergeOptionsPanel::PdfMergeOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("合并PDF"), tr("合并"), OutputLocation::Source::LeftOut, parent)
{
    addHeading(tr("插入"));
    addText(tr("空白"));
    addNote(tr("在合并之前，你可以在文件之间插入空白页"));
}
