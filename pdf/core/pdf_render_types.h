// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QImage>
#include <QList>
#include <QMetaType>
#include <QSize>
#include <QStringList>

#include <functional>

/// Which kind of view asks for a page image. The values are stable.
enum class PdfRenderPurpose : qint32 {
    Thumbnail = 0, ///< Page grid and thumbnail panel.
    PageView = 1,  ///< Continuous document view.
};
Q_DECLARE_METATYPE(PdfRenderPurpose)

/// Renders page i at size i; has the contract of PdfEditorBackend::renderPagesUnless().
using PdfPageRenderFunction =
    std::function<QList<QImage>(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &pages,
                                const QList<QSize> &targetSizes, QStringList *errors)>;
