// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/backend_error_box.h"

#include "widgets/modern_message_box.h"

#include <QCoreApplication>

namespace {

struct ErrorSentence
{
    PdfBackendError error;
    const char *text;
};

constexpr ErrorSentence kSentences[] = {
    {PdfBackendError::FileNotFound, QT_TRANSLATE_NOOP("PdfBackendError", "文件不存在或已被移动。")},
    {PdfBackendError::PasswordRequired, QT_TRANSLATE_NOOP("PdfBackendError", "PDF 需要密码。")},
    {PdfBackendError::InvalidPassword, QT_TRANSLATE_NOOP("PdfBackendError", "PDF 密码错误。")},
    {PdfBackendError::InvalidDocument,
     QT_TRANSLATE_NOOP("PdfBackendError", "PDF 已损坏或格式不受支持。")},
    {PdfBackendError::RenderFailed, QT_TRANSLATE_NOOP("PdfBackendError", "页面渲染失败。")},
    {PdfBackendError::WriteFailed,
     QT_TRANSLATE_NOOP("PdfBackendError", "无法写入目标文件，请检查权限和磁盘空间。")},
};
constexpr const char *kOtherSentence = QT_TRANSLATE_NOOP("PdfBackendError", "操作未完成。");

} // namespace

QString backendErrorSentence(PdfBackendError error)
{
    const char *text = kOtherSentence;
    for (const ErrorSentence &sentence : kSentences) {
        if (sentence.error == error) {
            text = sentence.text;
        }
    }
    return QCoreApplication::translate("PdfBackendError", text);
}

void showBackendErrorBox(QWidget *parent, const QString &title, PdfBackendError error,
                         const QString &detail)
{
    ModernMessageBox::showError(parent, title, backendErrorSentence(error), detail.trimmed());
}
