// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/pdf_encry_page.h"

#include "tools/options/pdf_encry_options_panel.h"
#include "widgets/modern_message_box.h"

#include <QDir>
#include <QFileInfo>

PdfEncryPage::PdfEncryPage(QWidget *parent)
    : FileToolPage(new PdfEncryOptionsPanel,
                   {tr("从你的桌面上添加或拖放PDF文件，开始加密。"), {}, {}}, parent)
{}

QList<TaskRequest> PdfEncryPage::requestsFor(const QStringList &files) const
{
    QList<TaskRequest> requests;
    for (const QString &file : files) {
        TaskRequest request = optionsPanel()->buildRequest();
        request.type = static_cast<qint32>(TaskType::Encrypt);
        request.inputFiles = {file};
        request.inputFile = QDir::toNativeSeparators(file);
        request.outputPath = QDir::toNativeSeparators(outputFolder(request, file));
        requests.append(request);
    }
    return requests;
}

bool PdfEncryPage::confirmStart()
{
    const auto *panel = qobject_cast<PdfEncryOptionsPanel *>(optionsPanel());
    return panel->passwordsMatch() ||
           ModernMessageBox::question(this, tr("加密PDF"), tr("两个密码应该匹配"),
                                      tr("继续将使用第一个密码加密文件。"), tr("继续"), QString(),
                                      ModernMessageBox::Warning) == ModernMessageBox::Confirmed;
}
