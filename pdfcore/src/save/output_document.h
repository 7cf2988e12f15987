// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/interactive/page_labels.h"
#include "pdfcore/src/save/output_sources.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace pdfcore {

class Contribution;
class OutputForm;

/// An entry of the outline for pages of an output that follow each other.
struct Heading
{
    std::size_t firstPage = 0;
    QString title;
};

/// Puts a document together from pages of others, with all that belongs to these pages.
///
/// The main document, that of the first page that is marked as such or else of the first page of
/// any file, becomes the output itself: it gets a new page tree, and what led to its pages that are
/// gone is taken out of it. Pages of others come in as copies, and what their documents say about
/// them joins what the main one says. For one thread.
///
/// The page tree (ISO 32000-2, 7.7.3.2) is made anew as a balanced one; QPDF's own operations on
/// pages make it flat.
class OutputDocument
{
public:
    /// @param only  Where all pages come from, whatever file they name; null for their files.
    explicit OutputDocument(const std::shared_ptr<QPDF> &only = {});
    ~OutputDocument();
    OutputDocument(const OutputDocument &) = delete;
    OutputDocument &operator=(const OutputDocument &) = delete;

    /// Puts `pages` together. QPDF's exceptions may come out of it.
    ///
    /// @param unlabelled  What becomes of pages without a label where others have one.
    /// @param headings    In the order of their pages. Each stands above the outlines of the
    ///                    documents whose first page in the output is among its own.
    EngineError assemble(const QList<PdfSourcePage> &pages,
                         Unlabelled unlabelled = Unlabelled::NumberByPlace,
                         const std::vector<Heading> &headings = {});

    /// The result; it reads from the source documents until this object goes.
    [[nodiscard]] QPDF &document() const { return *m_output; }
    /// What the output is to be encrypted by: what the main document is protected by, with the same
    /// passwords, for a save is not what takes a protection away. Null when it is not protected, or
    /// with pages of another protected document, which have passwords of their own.
    [[nodiscard]] QPDF *protection() const;
    /// The password that the main document was opened with.
    [[nodiscard]] QString password() const { return m_password; }
    /// Whether objects are to be packed into object streams, which makes documents of little
    /// content much smaller. Not where the main document has none and either must not have any or
    /// has so many pages that packing takes its time, unless `manyPages` are packed too.
    [[nodiscard]] bool packsObjects(bool manyPages = false) const;
    /// The least PDF version that the source documents need.
    [[nodiscard]] PDFVersion version() const { return m_sources.version(); }

private:
    /// A page of the output: a page of a source document or a blank one.
    struct Place
    {
        Contribution *contribution = nullptr; ///< Null for a blank page.
        int index = -1;
    };

    EngineError findPlaces(const QList<PdfSourcePage> &pages);
    void chooseMain(const QList<PdfSourcePage> &pages);
    [[nodiscard]] bool isMainInOrder() const;
    [[nodiscard]] LinkPruner::Role roleOf(const Contribution &contribution,
                                          bool sequenceChanged) const;
    std::vector<QPDFObjectHandle> newPages(const QList<PdfSourcePage> &pages, OutputForm &form);
    void joinOutlines(const std::vector<QPDFObjectHandle> &pages,
                      const std::vector<Heading> &headings);
    void joinLabels(Unlabelled unlabelled);

    OutputSources m_sources;
    std::vector<std::unique_ptr<Contribution>> m_contributions; ///< By their first pages.
    std::vector<Place> m_places;
    Contribution *m_main = nullptr;
    QString m_password;
    std::shared_ptr<QPDF> m_output;
};

} // namespace pdfcore
