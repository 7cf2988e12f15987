// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_convert_page.h"

#include "tools/common/output_names.h"
#include "tools/options/pdf_convert_options_panel.h"

#include <QDir>
#include <QFileInfo>

PdfConvertPage::PdfConvertPage(QWidget *parent)
    : FileToolPage(new PdfConvertOptionsPanel, {}, parent)
{}

QList<TaskRequest> PdfConvertPage::requestsFor(const QStringList &files) const
{
    QList<TaskRequest> requests;
    for (const QString &file : files) {
        TaskRequest request = optionsPanel()->buildRequest();
        request.type = static_cast<qint32>(TaskType::PdfToImages);
        request.inputFiles = {QDir::toNativeSeparators(file)};
        request.outputPath = OutputNames::createFolder(outputFolder(request, file),
                                                       QFileInfo(file).completeBaseName());
        requests.append(request);
    }
    return requests;
}
