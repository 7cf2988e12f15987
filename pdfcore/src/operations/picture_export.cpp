// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_picture_export.h"

#include "pdfcore/src/operations/embedded_pictures.h"
#include "pdfcore/src/operations/operation_outcome.h"
#include "pdfcore/src/operations/page_pictures.h"
#include "pdfcore/src/operations/picture_set.h"

#include <QFileInfo>

using pdfcore::EngineError;
using pdfcore::guarded;
using pdfcore::outcomeOf;
using pdfcore::PictureSet;

namespace {

/// Lets `make` put pictures into a set and gives them their place.
template <typename Make>
PdfPicturesOutcome exported(const QString &source, const PdfPictureTarget &target,
                            const PdfCancelFlag &cancel, Make &&make)
{
    PdfPicturesOutcome outcome;
    QStringList placed;
    static_cast<PdfOperationOutcome &>(outcome) = guarded([&]() -> PdfOperationOutcome {
        PictureSet pictures(target);
        EngineError error = pictures.check();
        if (!error.isError()) {
            error = make(pictures);
        }
        if (!error.isError()) {
            error = pictures.place(cancel, &placed);
        }
        return outcomeOf(error, cancel, source);
    });
    if (!outcome.isError()) {
        outcome.result = QFileInfo(target.folder).absoluteFilePath();
        outcome.pictures = placed;
    }
    return outcome;
}

} // namespace

PdfPicturesOutcome PdfPictureExport::exportPages(const QString &source,
                                                 const PdfPictureTarget &target,
                                                 const PdfCancelFlag &cancel, int dpi)
{
    return exported(source, target, cancel, [&](PictureSet &pictures) {
        return pdfcore::makePagePictures(source, dpi, pictures, cancel);
    });
}

PdfPicturesOutcome PdfPictureExport::exportImages(const QString &source,
                                                  const PdfPictureTarget &target,
                                                  const PdfCancelFlag &cancel)
{
    qsizetype skipped = 0;
    PdfPicturesOutcome outcome = exported(source, target, cancel, [&](PictureSet &pictures) {
        return pdfcore::makeEmbeddedPictures(source, pictures, cancel, &skipped);
    });
    outcome.skipped = outcome.isError() ? 0 : skipped;
    return outcome;
}
