// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>

#include <stdexcept>

namespace pdfcore {

/// Why a picture cannot be read. Thrown, because pictures are read from within QPDF's writing.
class PictureFailure final : public std::runtime_error
{
public:
    PictureFailure(PdfOperationError error, const QString &reason)
        : std::runtime_error(reason.toStdString())
        , m_error(error)
    {}

    [[nodiscard]] PdfOperationError error() const { return m_error; }

private:
    PdfOperationError m_error;
};

inline PictureFailure invalidPicture(const QString &reason)
{
    return {PdfOperationError::InvalidPicture, reason};
}

inline void throwIfCancelled(const PdfCancelFlag &cancel)
{
    if (cancel.isSet()) {
        throw PictureFailure(PdfOperationError::Cancelled, QStringLiteral("It was cancelled."));
    }
}

} // namespace pdfcore
