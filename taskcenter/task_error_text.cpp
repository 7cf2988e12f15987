// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_error_text.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

namespace {

const char *sentenceFor(PdfOperationError error)
{
    switch (error) {
    case PdfOperationError::None:
    case PdfOperationError::Cancelled:
        break;
    case PdfOperationError::FileNotFound:
        return QT_TRANSLATE_NOOP("TaskCenter", "找不到文件或无法打开文件。");
    case PdfOperationError::PasswordRequired:
        return QT_TRANSLATE_NOOP("TaskCenter", "需要密码。");
    case PdfOperationError::InvalidPassword:
        return QT_TRANSLATE_NOOP("TaskCenter", "密码不正确。");
    case PdfOperationError::InvalidDocument:
        return QT_TRANSLATE_NOOP("TaskCenter", "文件已损坏或不受支持。");
    case PdfOperationError::RenderFailed:
        return QT_TRANSLATE_NOOP("TaskCenter", "无法渲染页面。");
    case PdfOperationError::WriteFailed:
        return QT_TRANSLATE_NOOP("TaskCenter", "无法写入结果。");
    case PdfOperationError::InvalidPicture:
        return QT_TRANSLATE_NOOP("TaskCenter", "图像已损坏或不受支持。");
    }
    return nullptr;
}

} // namespace

QString taskErrorText(const PdfOperationOutcome &outcome)
{
    const char *sentence = sentenceFor(outcome.error);
    if (sentence == nullptr) {
        return {};
    }
    QStringList lines{QCoreApplication::translate("TaskCenter", sentence)};
    for (const QString &line : {QFileInfo(outcome.file).fileName(), outcome.message}) {
        if (!line.isEmpty()) {
            lines.append(line);
        }
    }
    return lines.join(u'\n');
}
