// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>
#include <QStringList>

/// How pictures become pages.
struct PdfPictureImportOptions
{
    enum class PageSize {
        A4,     ///< kA4PageSize
        Letter, ///< kLetterPageSize
    };
    enum class Orientation { Portrait, Landscape };

    PageSize pageSize = PageSize::A4;
    Orientation orientation = Orientation::Portrait;
    /// What stays free on each side of a page, in points; at least 0 and less than half of the
    /// shorter side.
    double margin = 0;
};

/// Makes one PDF file of pictures.
///
/// Static, keeps no state and may be called from any thread, also at the same time. It does not
/// throw.
class PdfPictureImport final
{
public:
    PdfPictureImport() = delete;

    /// Makes a page of each picture, in this order. The picture is in the middle of its page, as
    /// large as the margins let it be and undistorted, and stands as its EXIF data says.
    ///
    /// Nothing is lost: the bytes of a JPEG file are taken over as they are, also where they are
    /// damaged after the header, and so are the compressed samples of a PNG file unless it is
    /// interlaced or has an alpha channel. All else is compressed without loss: PNG, and the first
    /// picture of BMP, GIF, PBM, PGM, PPM, XBM, XPM and, where Qt has plugins for them, JPEG 2000,
    /// TIFF and WebP. Transparency stays, and so do ICC profiles that suit the picture; gamma and
    /// chromaticities of PNG files without a profile do not. Files with equal bytes are stored
    /// once.
    ///
    /// Memory grows with the bytes that the largest picture takes in the result, for formats other
    /// than JPEG and PNG with its pixels too, and hardly with the number of pictures. A few files
    /// are open at a time.
    ///
    /// The result is written to a temporary file in its folder, read back, and placed in one step;
    /// on failure, and when `cancel` is set before that step, there is no result, whatever was to
    /// be replaced is as it was, and no temporary file remains.
    ///
    /// Errors: FileNotFound (also for a picture that changes meanwhile) and InvalidPicture, with
    /// the file that is the reason; WriteFailed, also without pictures or with margins that leave
    /// nothing of a page; Cancelled.
    static PdfOperationOutcome toDocument(const QStringList &pictures,
                                          const PdfPictureImportOptions &options,
                                          const PdfPlacement &placement,
                                          const PdfCancelFlag &cancel);
};
