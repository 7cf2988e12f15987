// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QList>
#include <QString>

#include <functional>

class QWidget;

/// How writing a document ended.
struct SaveResult
{
    bool ok = false;
    PdfBackendError error = PdfBackendError::None;
    QString message; ///< The engine's own words.
};

/// Writes a document; has the contract of PdfEditorBackend::saveDocument().
using PdfSaveFunction = std::function<bool(const QList<PdfSourcePage> &pages, const QString &path,
                                           PdfBackendError *error, QString *message)>;

/// Writes `pages` to `path` on a thread of its own, while a box over the window of `parent` tells
/// the user and keeps him from changing anything; the window stays alive. Returns when it is done.
[[nodiscard]] SaveResult saveShowingProgress(QWidget *parent, const QList<PdfSourcePage> &pages,
                                             const QString &path, const PdfSaveFunction &write);
