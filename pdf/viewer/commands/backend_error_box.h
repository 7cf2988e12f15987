// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QString>

class QWidget;

/// What to tell the user when the engine failed with `error`, in his language.
[[nodiscard]] QString backendErrorSentence(PdfBackendError error);

/// Tells the user over the window of `parent` that the engine failed: the sentence for `error` and
/// the engine's own `detail`. Returns when the box was closed; `parent` may be deleted meanwhile.
void showBackendErrorBox(QWidget *parent, const QString &title, PdfBackendError error,
                         const QString &detail);
