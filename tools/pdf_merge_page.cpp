// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_merge_page.h"

#include "tools/common/output_names.h"
#include "tools/options/pdf_merge_options_panel.h"

PdfMergePage::PdfMergePage(QWidget *parent)
    : FileToolPage(new PdfMergeOptionsPanel,
                   {tr("从你的桌面上添加或拖放PDF文件，开始合并。"), {}, {}}, parent)
{}

QList<TaskRequest> PdfMergePage::requestsFor(const QStringList &files) const
{
    TaskRequest request = optionsPanel()->buildRequest();
    request.type = static_cast<qint32>(TaskType::Merge);
    request.inputFiles = files;
    request.outputPath = OutputNames::pdfFile(request.outputPath, QStringLiteral("pdf_merge"));
    return {request};
}
