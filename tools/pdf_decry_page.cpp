// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_decry_page.h"

#include "tools/options/pdf_decry_options_panel.h"

#include <QDir>
#include <QFileInfo>

PdfDecryPage::PdfDecryPage(QWidget *parent)
    : FileToolPage(new PdfDecryOptionsPanel,
                   {tr("从你的桌面上添加或拖放PDF文件，开始解密。"), {}, {}}, parent)
{}

QList<TaskRequest> PdfDecryPage::requestsFor(const QStringList &files) const
{
    QList<TaskRequest> requests;
    for (const QString &file : files) {
        TaskRequest request = optionsPanel()->buildRequest();
        request.type = static_cast<qint32>(TaskType::Decrypt);
        request.inputFile = QDir::toNativeSeparators(file);
        request.outputPath = QDir::toNativeSeparators(outputFolder(request, file));
        requests.append(request);
    }
    return requests;
}
