// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_file_revision.h"

#include <QImage>
#include <QList>
#include <QMetaType>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <functional>

/// Why an operation of the engine failed. The values are stable.
enum class PdfBackendError : qint32 {
    None = 0,             ///< No error.
    FileNotFound = 1,     ///< The source file does not exist or cannot be opened.
    PasswordRequired = 2, ///< The file is encrypted and the password is empty.
    InvalidPassword = 3,  ///< The file is encrypted and the given password is wrong.
    InvalidDocument = 4,  ///< The file is damaged or of a kind that is not supported.
    RenderFailed = 5,     ///< A page could not be rendered.
    WriteFailed = 6,      ///< The target file could not be written.
};
Q_DECLARE_METATYPE(PdfBackendError)

/// One page of a document that is shown or assembled, described by where it comes from.
struct PdfSourcePage
{
    /// Full path of the source file; empty for a blank page.
    QString filePath;
    /// Password that opens the source file; empty if it needs none.
    QString password;
    /// Zero-based index of the page in the source file; -1 for a blank page.
    qint32 pageIndex = -1;
    /// Clockwise rotation in degrees on top of the source page's own: 0, 90, 180 or 270.
    qint32 rotation = 0;
    /// Size in points (1/72 inch) before `rotation`; for a blank page the size to create.
    QSizeF pageSize;
    /// True for a page that is created empty instead of copied from a file; a page that names no
    /// file is created empty as well.
    bool isBlank = false;
    /// The revision of the source file that is meant, as inspectDocument() found it; null for the
    /// one that the file holds when the page is used.
    PdfFileRevisionPtr revision;
    /// The page is of the document that is being edited. What belongs to a document as a whole,
    /// such as its title, comes from that one; where no page is marked, from that of the first
    /// page.
    bool isOfMainDocument = false;
};

/// What the engine found in a file.
struct PdfDocumentInfo
{
    /// One size per page, in page order, in points: what a reader sees before any extra rotation.
    ///
    /// That is the crop box cut to the media box, scaled by the page's user unit and turned by the
    /// page's own rotation.
    QList<QSizeF> pageSizes;
    /// The revision of the file that was inspected, for PdfSourcePage::revision.
    PdfFileRevisionPtr revision;
};

/// One of several files that are written together.
struct PdfOutputFile
{
    QList<PdfSourcePage> pages;
    QString path;
};

/// What became of a file that was to be written.
struct PdfSaveOutcome
{
    PdfBackendError error = PdfBackendError::None;
    QString message; ///< The engine's reason on failure.
};

/// Takes a band of a page: `band` has the width of the page, and its first row is row `top` of it.
/// The pixels are there during the call only; what is to be kept is to be copied (QImage::copy()).
/// Returns whether the next band is wanted.
using PdfPageBandSink = std::function<bool(const QImage &band, int top)>;

/// The PDF engine: reads, renders and writes PDF files.
///
/// All operations are static, keep no state that a caller could notice and may be called from any
/// thread, also at the same time. None throws, and none prints anything. Output arguments may be
/// null. On success `error` is `PdfBackendError::None` and `message` is empty; on failure `message`
/// is a short sentence with the engine's own reason, never a password.
class PdfEditorBackend final
{
public:
    PdfEditorBackend() = delete;

    /// Reads the page sizes of the file at `path`.
    ///
    /// `password` may be the user or the owner password. A file that opens with the empty user
    /// password needs none. On failure `info` is left as it was.
    /// Errors: FileNotFound, PasswordRequired, InvalidPassword, InvalidDocument.
    static bool inspectDocument(const QString &path, const QString &password, PdfDocumentInfo *info,
                                PdfBackendError *error, QString *message);

    /// Renders one page with its annotations and form fields on white, as an opaque image with 24
    /// bits a pixel (QImage::Format_RGB888).
    ///
    /// `targetSize` is in device pixels and is the size of the rotated page; the page is stretched
    /// to it. Returns a null image on failure. A page that takes too long or too much memory fails,
    /// and so does a target of more than 2^29 pixels.
    /// Errors: RenderFailed, or those of inspectDocument() when the file does not open;
    /// FileNotFound also when it does not hold the revision that the page names.
    static QImage renderPage(const PdfSourcePage &page, QSize targetSize, PdfBackendError *error,
                             QString *message);

    /// Renders one page as renderPage() does, but hands it over in bands from the top to the
    /// bottom, so that a page of any size takes little memory: for sheets of paper at the
    /// resolution of a printer, of which there is never the whole in memory.
    ///
    /// A band begins with the last `overlap` rows of the one before, fewer where the bands are as
    /// low as that, so that what is drawn smaller or with smooth edges shows no line between them.
    /// `sink` is called on the calling thread, as long as it returns true; this is where to stop a
    /// page that is not wanted any more. It must not wait for a save of the file that the page is
    /// in, which waits for the page.
    ///
    /// Returns whether the page was handed over to its end: false on failure, after which some
    /// bands may have been handed over, and without an error when the sink returned false. The page
    /// is interpreted once. A page that takes too long or too much memory fails; the more pixels,
    /// the more time it has, and what the sink takes does not count. Errors: those of renderPage().
    static bool renderPageInBands(const PdfSourcePage &page, QSize targetSize, int overlap,
                                  const PdfPageBandSink &sink, PdfBackendError *error,
                                  QString *message);

    /// Renders page i at size i, in order. Both lists have the same length.
    ///
    /// A page that fails gives a null image and its reason in element i of `errors`; the others are
    /// rendered all the same. `errors` gets one element per page, empty where the page succeeded.
    /// The call waits while as many threads of the process render as may (render_threads.h).
    static QList<QImage> renderPages(const QList<PdfSourcePage> &pages,
                                     const QList<QSize> &targetSizes, QStringList *errors);

    /// The same until `cancel` is set, from any thread: what has not been rendered by then fails,
    /// and the call returns soon, also in the middle of a page.
    static QList<QImage> renderPagesUnless(const PdfCancelFlag &cancel,
                                           const QList<PdfSourcePage> &pages,
                                           const QList<QSize> &targetSizes, QStringList *errors);

    /// Writes a new PDF whose page i is element i of `pages`.
    ///
    /// Where the main document is protected, the new file is protected by the same passwords and
    /// permissions; with pages of another protected document, or where the main one is not
    /// protected, it is not.
    ///
    /// The document is written to a temporary file in the target's folder, checked by reopening it
    /// and then moved over `path` in one step; the target's permissions are kept. On failure the
    /// target is as it was before and no temporary file remains. The target may be one of the
    /// source files; see PdfFileRevision for what becomes of its superseded content. A source file
    /// that does not hold the revision that its pages name ends the operation.
    /// Errors: WriteFailed, or those of inspectDocument() for a source file.
    static bool saveDocument(const QList<PdfSourcePage> &pages, const QString &path,
                             PdfBackendError *error, QString *message);

    /// Writes each file as saveDocument() does, with the same content, in no certain order and on
    /// several threads; returns when all are done. Element i is the outcome of file i; a file that
    /// fails does not stop the others. The paths differ from each other.
    ///
    /// A file costs what its own pages cost, and not its whole source as with saveDocument(), which
    /// tells where a long document is split into many. Files that are new are flushed to the disk
    /// together at the end; those that replace others one by one before they do.
    static QList<PdfSaveOutcome> saveDocuments(const QList<PdfOutputFile> &files);
};
