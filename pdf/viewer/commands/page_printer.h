// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

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

/// Prints pages one to a sheet, each as large as it fits and centred.
class PagePrinter
{
    Q_DECLARE_TR_FUNCTIONS(PagePrinter)

public:
    enum class Outcome {
        Printed,
        NotStarted, ///< The printer took no job.
        Incomplete, ///< A part was printed; see reason().
    };

    /// Prints on the calling thread; takes long.
    Outcome print(const QList<PdfPageRecord> &pages, PrintRange range, QPrinter &printer);

    /// What to tell the user when printing ended early.
    [[nodiscard]] const QString &reason() const { return m_reason; }

private:
    QString m_reason;
};
