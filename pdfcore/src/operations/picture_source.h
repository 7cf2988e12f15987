// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/src/base/engine_error.h"

#include <QList>
#include <QSizeF>
#include <QString>

namespace pdfcore {

/// A file that pictures are made of, as it was found.
struct PictureSource
{
    PdfSourcePage page;      ///< Of which only the index is to be set.
    QList<QSizeF> pageSizes; ///< In points.
};

/// Opens a file with the empty password.
EngineError openPictureSource(const QString &path, const PdfCancelFlag &cancel,
                              PictureSource *source);

} // namespace pdfcore
