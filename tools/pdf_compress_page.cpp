// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_compress_page.h"

#include "tools/common/output_names.h"
#include "tools/options/pdf_compress_options_panel.h"

#include <QDir>
#include <QFileInfo>

PdfCompressPage::PdfCompressPage(QWidget *parent)
    : FileToolPage(new PdfCompressOptionsPanel,
                   {tr("从你的桌面上添加或拖放PDF文件，开始压缩。"), {}, {}}, parent)
{}

QList<TaskRequest> PdfCompressPage::requestsFor(const QStringList &files) const
{
    QList<TaskRequest> requests;
    for (const QString &file : files) {
        TaskRequest request = optionsPanel()->buildRequest();
        request.type = static_cast<qint32>(TaskType::Compress);
        request.inputFile = QDir::toNativeSeparators(file);
        request.outputPath =
            OutputNames::pdfFile(outputFolder(request, file), QFileInfo(file).completeBaseName());
        requests.append(request);
    }
    return requests;
}
