// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/support/dialog_answers.h"

#include "tests/support/menu_click.h"

#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace {

QString labelText(const QWidget *box, const char *objectName)
{
    const auto *label = box->findChild<QLabel *>(QLatin1String(objectName));
    return label ? label->text() : QString();
}

int kindOf(const ModernMessageBox *box)
{
    struct Accent
    {
        QColor color;
        int kind;
    };
    static constexpr Accent kAccents[] = {
        {Theme::accent, ModernMessageBox::Information},
        {Theme::success, ModernMessageBox::Success},
        {Theme::warning, ModernMessageBox::Warning},
        {Theme::danger, ModernMessageBox::Danger},
    };
    auto *bar = box->findChild<QWidget *>(QStringLiteral("messageBoxAccent"));
    const QColor shown = bar ? bar->grab().toImage().pixelColor(bar->rect().center()) : QColor();
    for (const Accent &accent : kAccents) {
        if (accent.color == shown) {
            return accent.kind;
        }
    }
    return -1;
}

} // namespace

DialogAnswers::DialogAnswers(const QStringList &buttons)
    : m_buttons(buttons)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // A dialog may open another one while it is answered, during which the timer would be silent.
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (!m_answerPosted) {
            m_answerPosted = true;
            QMetaObject::invokeMethod(this, &DialogAnswers::answer, Qt::QueuedConnection);
        }
    });
    m_timer.start(1);
}

DialogAnswers::~DialogAnswers() = default;

bool DialogAnswers::allGiven() const
{
    return m_passwords.isEmpty() && m_buttons.isEmpty() && m_files.isEmpty() &&
           m_menuEntries.isEmpty();
}

void DialogAnswers::answer()
{
    m_answerPosted = false;
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
        answerMenu(menu);
        return;
    }
    QWidget *active = QApplication::activeModalWidget();
    if (auto *dialog = qobject_cast<QInputDialog *>(active)) {
        answerPassword(dialog);
    } else if (auto *box = qobject_cast<ModernMessageBox *>(active)) {
        answerBox(box);
    } else if (auto *fileDialog = qobject_cast<QFileDialog *>(active)) {
        answerFileDialog(fileDialog);
    } else if (auto *question = qobject_cast<QMessageBox *>(active)) {
        // The file dialog's own question whether to replace a file.
        question->button(QMessageBox::Yes)->click();
    }
}

void DialogAnswers::answerPassword(QInputDialog *dialog)
{
    QCOMPARE(dialog->windowTitle(), QStringLiteral("需要密码"));
    QCOMPARE(dialog->textEchoMode(), QLineEdit::Password);
    QCOMPARE(dialog->textValue(), QString());
    m_seen.append(dialog->labelText());
    const QString password = m_passwords.isEmpty() ? QString() : m_passwords.takeFirst();
    if (password.isNull()) {
        dialog->reject();
    } else {
        dialog->setTextValue(password);
        dialog->accept();
    }
}

void DialogAnswers::answerBox(ModernMessageBox *box)
{
    const bool isBusyBox = box->findChildren<QPushButton *>().isEmpty();
    if (m_answered == box) {
        return;
    }
    m_answered = box;
    m_kinds.append(kindOf(box));
    for (const char *name : {"messageBoxTitle", "messageBoxMessage", "messageBoxDetails"}) {
        m_seen.append(labelText(box, name));
    }
    if (!isBusyBox) {
        const QString name =
            m_buttons.isEmpty() ? QStringLiteral("messageBoxConfirmButton") : m_buttons.takeFirst();
        auto *button = box->findChild<QPushButton *>(name);
        QVERIFY2(button, qPrintable(name));
        m_answered.clear();
        button->click();
    }
}

void DialogAnswers::answerFileDialog(QFileDialog *dialog)
{
    if (m_answered == dialog) {
        // The dialog has refused its answer.
        dialog->reject();
        return;
    }
    m_answered = dialog;
    m_fileDialogs.append({dialog->windowTitle(), dialog->nameFilters(),
                          dialog->directory().absolutePath(), dialog->selectedFiles(),
                          dialog->fileMode()});
    const QStringList files = m_files.isEmpty() ? QStringList() : m_files.takeFirst();
    if (files.isEmpty()) {
        dialog->reject();
        return;
    }
    auto *field = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QVERIFY(field);
    field->setText(files.size() == 1
                       ? files.first()
                       : QLatin1Char('"') + files.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
    QMetaObject::invokeMethod(dialog, "accept");
}

void DialogAnswers::answerMenu(QMenu *menu)
{
    m_menuTexts.clear();
    QAction *chosen = nullptr;
    const QString wanted = m_menuEntries.isEmpty() ? QString() : m_menuEntries.takeFirst();
    for (QAction *action : menu->actions()) {
        m_menuTexts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        if (!wanted.isEmpty() && action->text() == wanted) {
            chosen = action;
        }
    }
    if (chosen) {
        clickMenuEntry(*menu, chosen);
    } else {
        menu->close();
    }
}
