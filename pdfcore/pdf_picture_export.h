// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>
#include <QStringList>

/// The format of picture files. The values are stable.
enum class PdfPictureFormat : qint32 {
    Jpeg = 0, ///< Quality 90, suffix ".jpg".
    Png = 1,  ///< Lossless, suffix ".png".
};

/// Where pictures go and what they are called.
struct PdfPictureTarget
{
    QString folder; ///< Has to exist.
    /// What the names begin with; no folder in it. Picture 1 becomes "base-01.png", with as many
    /// digits as the number of pictures needs and at least two. Where there is something with that
    /// name, which stays as it is, the picture becomes "base-01(1).png", "base-01(2).png" and so
    /// on.
    QString baseName;
    PdfPictureFormat format = PdfPictureFormat::Png;
};

/// How making pictures ended.
struct PdfPicturesOutcome : PdfOperationOutcome
{
    QStringList pictures;  ///< On success their paths, in order; `result` is the folder.
    qsizetype skipped = 0; ///< On success embedded pictures that could not be decoded.
};

/// Operations of the PDF engine that make picture files of a PDF file.
///
/// All are static, keep no state that a caller could notice and may be called from any thread, also
/// at the same time; they work on at most two threads, which count among those that render
/// (render_threads.h) and leave to others whenever these wait. None throws. Each picture is written
/// to a temporary file in the folder and read back; once there are all of them they get their
/// names. On failure, and when `cancel` is set before, there are neither pictures nor temporary
/// files. A source file that opens with the empty password only is opened, no other that is
/// encrypted.
///
/// Errors of all: FileNotFound, PasswordRequired, InvalidDocument, WriteFailed, Cancelled.
class PdfPictureExport final
{
public:
    PdfPictureExport() = delete;

    static constexpr int kUsualDpi = 200;

    /// Pixels that a picture of a page has at most, and that an embedded picture has at most.
    static constexpr qint64 kMostPixels = qint64{1} << 27;
    /// Pixels of the longer side at most, which is what JPEG files can have.
    static constexpr int kMostPixelsOfSide = 65'500;

    /// Makes one picture of each page as it is shown, on white, with `dpi` pixels per inch of what
    /// a reader sees of the page; the file says how many they are. The picture of a page that
    /// would have more than kMostPixels, or a side of more than kMostPixelsOfSide, has fewer pixels
    /// per inch. Also fails with RenderFailed: when a page cannot be rendered, with its number in
    /// the message, and unless `dpi` is positive. A file without pages is an InvalidDocument.
    static PdfPicturesOutcome exportPages(const QString &source, const PdfPictureTarget &target,
                                          const PdfCancelFlag &cancel, int dpi = kUsualDpi);

    /// Makes one picture of each image in the document: every image XObject once (ISO 32000-2,
    /// 8.9.5), also of forms, patterns, soft masks that are drawn and annotations, and the inline
    /// images (8.9.7) of all of these. Letters of Type 3 fonts and the masks of images are none.
    ///
    /// They come in the order of the pages and of what is drawn on them, each page's annotations
    /// after the page; those that resources name and nothing draws come last. Each has the size of
    /// its image, in sRGB. Images that a JPEG file can hold as they are come out byte for byte with
    /// PdfPictureFormat::Jpeg. Masks (SMask, Mask, colour key masks) become transparency, to which
    /// the mask is fitted, and with PdfPictureFormat::Jpeg white; a stencil mask is black. An image
    /// of more than kMostPixels, or with a side of more than kMostPixelsOfSide, becomes smaller by
    /// a power of two. Images that cannot be decoded are counted and left out. A document without
    /// images is no failure.
    static PdfPicturesOutcome exportImages(const QString &source, const PdfPictureTarget &target,
                                           const PdfCancelFlag &cancel);
};
