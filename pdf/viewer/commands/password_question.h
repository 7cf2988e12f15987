// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QString>

#include <functional>

class QWidget;

/// How reading a file that may need a password ended.
struct PasswordedRead
{
    enum class Outcome {
        Done,
        Failed,  ///< See error and message.
        GivenUp, ///< The user gave no password, or the parent of the dialog was deleted.
    };

    Outcome outcome = Outcome::Failed;
    PdfBackendError error = PdfBackendError::None;
    QString message; ///< The engine's own words.
};

/// Reads a file with a password; false with the engine's error and message when that fails.
using PasswordedReadFunction =
    std::function<bool(const QString &password, PdfBackendError *error, QString *message)>;

/// Reads a file with `password`, and as long as it needs another one, asks for that in a dialog
/// over `parent`; `question` says what for. Nothing is read any more once `parent` is deleted.
[[nodiscard]] PasswordedRead readAskingForPasswords(QWidget *parent, const QString &password,
                                                    const QString &question,
                                                    const PasswordedReadFunction &read);
