// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/password_question.h"

#include "widgets/theme.h"

#include <QCoreApplication>
#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>

#include <optional>

namespace {

constexpr int kWidth = 400;
constexpr QMargins kMargins{24, 20, 24, 20};
constexpr int kSpacing = 12;

// %1 white, %2 ink, %3 border, %4 to %6 accent, hovered, pressed, %7 hovered, %8 pressed
constexpr QLatin1String kStyleSheet{R"(
QInputDialog { background: %1; }
QLabel { color: %2; background: transparent; font-size: 14px; }
QLineEdit {
    min-height: 36px; color: %2; background: %1; border: 1px solid %3; border-radius: 8px;
    padding: 0 10px; font-size: 14px;
}
QLineEdit:focus { border-color: %4; }
QPushButton {
    min-width: 48px; min-height: 36px; color: %2; background: %1; border: 1px solid %3;
    border-radius: 8px; padding: 0 16px; font-size: 14px; font-weight: 600;
}
QPushButton:hover { background: %7; }
QPushButton:pressed { background: %8; }
QPushButton:focus { border-color: %4; }
QPushButton:default { color: %1; background: %4; border-color: %4; }
QPushButton:default:hover { background: %5; border-color: %5; }
QPushButton:default:pressed { background: %6; border-color: %6; }
QPushButton:default:focus { border-color: %2; }
)"};

class PasswordQuestion
{
    Q_DECLARE_TR_FUNCTIONS(PasswordQuestion)

public:
    static QString afterWrongPassword() { return tr("密码错误，请重新输入 PDF 密码："); }
    static void setTextsOn(QInputDialog &dialog)
    {
        dialog.setWindowTitle(tr("需要密码"));
        dialog.setOkButtonText(tr("确定"));
        dialog.setCancelButtonText(tr("取消"));
    }
};

void setLook(QInputDialog &dialog)
{
    dialog.setObjectName(QStringLiteral("pdfPasswordDialog"));
    dialog.setStyleSheet(QString(kStyleSheet)
                             .arg(Theme::white.name(), Theme::ink.name(),
                                  Theme::borderStrong.name(), Theme::accent.name(),
                                  Theme::accentHover.name(), Theme::accentPressed.name(),
                                  Theme::hover.name(), Theme::pressed.name()));
    // The dialog has no layout before it is asked for its size.
    dialog.ensurePolished();
    const int height = dialog.sizeHint().height();
    if (QLayout *layout = dialog.layout()) {
        layout->setContentsMargins(kMargins);
        layout->setSpacing(kSpacing);
    }
    if (auto *label = dialog.findChild<QLabel *>()) {
        // At the side where the field begins, whichever way the text itself runs.
        label->setAlignment(QStyle::visualAlignment(label->layoutDirection(), Qt::AlignLeft) |
                            Qt::AlignVCenter | Qt::AlignAbsolute);
    }
    // No other button with a text has an icon.
    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        button->setIcon(QIcon());
    }
    dialog.resize(kWidth, height);
}

/// Asks for the password of a file; `label` says what for. Returns nothing if the user cancels or
/// `parent` is deleted while the dialog is open.
std::optional<QString> askForPassword(QWidget *parent, const QString &label)
{
    // The dialog belongs to its parent, which may be deleted while it is open.
    const QPointer<QInputDialog> dialog(new QInputDialog(parent));
    PasswordQuestion::setTextsOn(*dialog);
    dialog->setLabelText(label);
    dialog->setTextEchoMode(QLineEdit::Password);
    setLook(*dialog);
    std::optional<QString> answer;
    if (dialog->exec() == QDialog::Accepted && dialog != nullptr) {
        answer = dialog->textValue();
    }
    delete dialog;
    return answer;
}

bool needsPassword(PdfBackendError error)
{
    return error == PdfBackendError::PasswordRequired || error == PdfBackendError::InvalidPassword;
}

} // namespace

PasswordedRead readAskingForPasswords(QWidget *parent, const QString &password,
                                      const QString &question, const PasswordedReadFunction &read)
{
    using Outcome = PasswordedRead::Outcome;
    PasswordedRead result;
    bool done = read(password, &result.error, &result.message);
    while (!done && needsPassword(result.error)) {
        const std::optional<QString> answer =
            askForPassword(parent, result.error == PdfBackendError::PasswordRequired
                                       ? question
                                       : PasswordQuestion::afterWrongPassword());
        if (!answer) {
            result.outcome = Outcome::GivenUp;
            return result;
        }
        done = read(*answer, &result.error, &result.message);
    }
    result.outcome = done ? Outcome::Done : Outcome::Failed;
    return result;
}
