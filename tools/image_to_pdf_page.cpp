// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/image_to_pdf_page.h"

#include "tools/common/output_names.h"
#include "tools/options/image_to_pdf_options_panel.h"

#include <QDir>
#include <QFileInfo>

ImageToPdfPage::ImageToPdfPage(QWidget *parent)
    : FileToolPage(
          new ImageToPdfOptionsPanel,
          {tr("添加或拖拽图像文件进行转换。"), tr("图像文件 (*.jpg *.jpeg *.png)"), tr("选择图片")},
          parent)
{}

QList<TaskRequest> ImageToPdfPage::requestsFor(const QStringList &files) const
{
    TaskRequest request = optionsPanel()->buildRequest();
    request.type = static_cast<qint32>(TaskType::ImagesToPdf);
    const auto outputFor = [&request](const QString &file) {
        return OutputNames::pdfFile(outputFolder(request, file),
                                    QFileInfo(file).completeBaseName());
    };
    if (request.options.value(QStringLiteral("singlePdf")).toBool()) {
        request.inputFiles = files;
        request.outputPath = outputFor(files.constFirst());
        return {request};
    }
    // Each output becomes the folder of the next one, unless they go beside their images.
    // Deliberate: the service turns down what is no folder, and says so.
    QList<TaskRequest> requests;
    for (const QString &file : files) {
        request.inputFiles = {QDir::toNativeSeparators(file)};
        request.outputPath = outputFor(file);
        requests.append(request);
    }
    return requests;
}
