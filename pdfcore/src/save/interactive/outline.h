// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/source/object_copier.h"
#include "pdfcore/src/save/source/source_document.h"

#include <QString>

#include <vector>

namespace pdfcore {

/// The outline (ISO 32000-2, 12.3.3) of one source document, without the entries whose pages are
/// gone.
///
/// An entry is gone when the page it leads to is, or when it leads nowhere and all that stood below
/// it is gone. What stands below an entry that is gone moves up into its place.
///
/// QPDFOutlineDocumentHelper only reads outlines, and not below a depth of its own.
class Outline
{
public:
    struct Entry
    {
        QPDFObjectHandle dictionary;
        int parent = -1; ///< Index of the entry above, or -1.
        bool isOpen = false;
    };

    /// Reads and prunes the outline of a source document.
    static Outline of(SourceDocument &source, LinkPruner &links, bool isMain);

    [[nodiscard]] const std::vector<Entry> &entries() const { return m_entries; }
    /// Whether entries were taken out.
    [[nodiscard]] bool isPruned() const { return m_isPruned; }

    /// Adds an entry that leads to a page of the target. What is appended behind it gets below it.
    void appendHeading(const QString &title, QPDFObjectHandle page, QPDF &target);

    /// Adds the entries of another outline behind these, below the last heading if there is one: as
    /// copies, or as they are without a copier.
    void append(const Outline &other, ObjectCopier *copier, QPDF &target);

    /// Writes the entries as the outline of the document.
    void install(QPDF &document) const;

private:
    std::vector<Entry> m_entries; ///< Each one before those below it, in reading order.
    int m_heading = -1;           ///< Index of the last one, or -1.
    bool m_isPruned = false;
};

} // namespace pdfcore
