// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"

#include <QEvent>

/// What every view of pages has to look out for.

/// Whether a widget may have come to a screen with other device pixels.
[[nodiscard]] inline bool isScreenChange(const QEvent &event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    if (event.type() == QEvent::DevicePixelRatioChange) {
        return true;
    }
#endif
    return event.type() == QEvent::ScreenChangeInternal;
}

/// Whether a change of `roles` of the document model, empty for all of them, makes pages look
/// different.
[[nodiscard]] inline bool changesPageImages(const QList<int> &roles)
{
    return roles.isEmpty() || roles.contains(PdfDocumentModel::RotationRole) ||
           roles.contains(PdfDocumentModel::DisplaySizeRole);
}
