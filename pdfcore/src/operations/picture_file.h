// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/operations/picture_encoder.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <memory>
#include <optional>

namespace pdfcore {

/// A picture that is written to a temporary file in the folder that it is for. One thread at a
/// time.
class PictureFile final
{
public:
    explicit PictureFile(const PdfPictureTarget &target);

    EngineError open();

    /// Takes rows of a picture that it encodes; the first call of begin() comes before.
    void begin(const PictureForm &form);
    EngineError addRows(const unsigned char *rows, qsizetype bytesPerRow, int count,
                        const PdfCancelFlag &cancel);
    /// Ends a picture of which it has got all rows.
    EngineError finish();

    /// Takes what is a whole file already.
    EngineError writeWhole(const QByteArray &content);

    /// The file, which is complete and reads as it was written.
    [[nodiscard]] AtomicFile &file() { return m_file; }

private:
    bool write(const char *data, qsizetype size);
    EngineError close();
    EngineError readBack();

    const PdfPictureFormat m_format;
    AtomicFile m_file;
    std::optional<QCryptographicHash> m_written; ///< Until it is read back.
    std::unique_ptr<PictureEncoder> m_encoder;
};

} // namespace pdfcore
