// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QSize>
#include <QString>

#include <stdexcept>

namespace pdfcore {

/// Outcome of a step inside the engine: an error value and a short sentence with the reason.
struct EngineError
{
    PdfBackendError code = PdfBackendError::None;
    QString message;

    [[nodiscard]] bool isError() const { return code != PdfBackendError::None; }
};

/// Thrown where something cannot be written, as on a full disk, on the way through a library.
class WriteError final : public std::runtime_error
{
public:
    explicit WriteError(const QString &reason)
        : std::runtime_error(reason.toStdString())
    {}
};

/// What work that was cancelled ends with.
inline EngineError cancelledError(PdfBackendError code)
{
    return {code, QStringLiteral("It was cancelled.")};
}

/// What an image ends with that there is not enough memory for.
inline EngineError noMemoryFor(QSize size)
{
    return {PdfBackendError::RenderFailed,
            QStringLiteral("Not enough memory for an image of %1 × %2 pixels.")
                .arg(size.width())
                .arg(size.height())};
}

/// Hands an outcome to a caller's output arguments, either of which may be null.
inline void report(const EngineError &outcome, PdfBackendError *error, QString *message)
{
    if (error != nullptr) {
        *error = outcome.code;
    }
    if (message != nullptr) {
        *message = outcome.message;
    }
}

} // namespace pdfcore
