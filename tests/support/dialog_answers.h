// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFileDialog>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

class QInputDialog;
class QMenu;
class ModernMessageBox;

/// Answers the modal dialogs and the menus that come up while it lives, one after the other, and
/// notes what they said.
///
/// Of a message box it also notes the kind, as the colour of its accent bar shows it.
///
/// Without a prepared answer a message box is confirmed and everything else is cancelled. A busy
/// box without buttons is noted and left alone.
class DialogAnswers final : public QObject
{
public:
    /// A file dialog as it came up.
    struct FileDialog
    {
        QString title;
        QStringList filters;
        QString folder;
        /// The names in the dialog's field as full paths.
        QStringList proposals;
        QFileDialog::FileMode mode = QFileDialog::AnyFile;
    };

    /// Clicks the buttons of these object names in the next message boxes, one in each.
    explicit DialogAnswers(const QStringList &buttons = {});
    ~DialogAnswers() override;

    /// Gives `password` to the next password dialog, or cancels it when that is null.
    void addPassword(const QString &password) { m_passwords.append(password); }
    /// Clicks the button of that object name in the next message box.
    void addButton(const QString &objectName) { m_buttons.append(objectName); }
    /// Gives the paths to the next file dialog, or cancels it when there are none.
    void addFiles(const QStringList &paths) { m_files.append(paths); }
    /// Clicks the entry in the next menu.
    void addMenuEntry(const QString &text) { m_menuEntries.append(text); }

    /// Whether every prepared answer was given.
    [[nodiscard]] bool allGiven() const;
    /// Labels of the password dialogs, and title, text and details of the message boxes.
    [[nodiscard]] QStringList seen() const { return m_seen; }
    /// The kinds of the message boxes, values of ModernMessageBox::Kind; -1 for none of these.
    [[nodiscard]] QList<int> kinds() const { return m_kinds; }
    [[nodiscard]] QList<FileDialog> fileDialogs() const { return m_fileDialogs; }
    /// The texts of the last menu; a dash stands for a separator.
    [[nodiscard]] QStringList menuTexts() const { return m_menuTexts; }

private:
    void answer();
    void answerPassword(QInputDialog *dialog);
    void answerBox(ModernMessageBox *box);
    void answerFileDialog(QFileDialog *dialog);
    void answerMenu(QMenu *menu);

    QTimer m_timer;
    bool m_answerPosted = false;
    QPointer<QObject> m_answered;
    QStringList m_passwords;
    QStringList m_buttons;
    QList<QStringList> m_files;
    QStringList m_menuEntries;
    QStringList m_seen;
    QList<int> m_kinds;
    QList<FileDialog> m_fileDialogs;
    QStringList m_menuTexts;
};
