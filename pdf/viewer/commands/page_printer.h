// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QCoreApplication>
#include <QList>
#include <QSize>
#include <QString>

#include <functional>

class QPainter;
class QPrinter;

/// Rows of pages from `first` up to but not including `end`.
struct PrintRange
{
    int first = 0;
    int end = 0;

    friend bool operator==(const PrintRange &, const PrintRange &) = default;
};

/// The rows that the page numbers of a print dialog mean in a document of `pageCount` pages, at
/// least one. No number from or to means from the first and to the last page; numbers out of range
/// are brought into it, and the first page is printed also when the last lies before it.
[[nodiscard]] PrintRange printRange(int fromPage, int toPage, int pageCount);

/// The size in pixels at which a page is rendered that takes `size` device pixels of a sheet: the
/// same up to 2^31 pixels, A1 paper at 1200 dpi, and beyond a half, a third and so on of the width
/// and the height.
[[nodiscard]] QSize printRenderSize(QSize size);

/// Renders a page in bands; has the contract of PdfEditorBackend::renderPageInBands().
using PdfBandFunction =
    std::function<bool(const PdfSourcePage &page, QSize targetSize, int overlap,
                       const PdfPageBandSink &sink, PdfBackendError *error, QString *message)>;

/// Prints pages one to a sheet, each as large as it fits and centred.
///
/// A page goes to the printer in bands, so that it never is in memory as a whole.
class PagePrinter
{
    Q_DECLARE_TR_FUNCTIONS(PagePrinter)

public:
    enum class Outcome {
        Printed,
        NotStarted, ///< The printer took no job.
        Incomplete, ///< A part was printed; see reason().
        Cancelled,  ///< A part was printed, if the printer could not take the job back.
    };

    explicit PagePrinter(PdfBandFunction render = &PdfEditorBackend::renderPageInBands);

    /// Sets what tells, before each band of a page, whether the job is to be given up. It may run
    /// the event loop. None by default.
    void setCancelQuery(std::function<bool()> isCancelled);

    /// Prints on the calling thread; takes long.
    Outcome print(const QList<PdfPageRecord> &pages, PrintRange range, QPrinter &printer);

    /// What to tell the user when printing ended early.
    [[nodiscard]] const QString &reason() const { return m_reason; }

private:
    /// Prints a page to the current sheet; false when the job is to end.
    bool printPage(const PdfPageRecord &page, int number, const QPrinter &printer,
                   QPainter &painter);
    [[nodiscard]] bool isCancelled() const { return m_isCancelled && m_isCancelled(); }

    PdfBandFunction m_render;
    std::function<bool()> m_isCancelled;
    QString m_reason;
};
