// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

#include <memory>

namespace pdfcore {
class FileRevisions;
struct RevisionContent;
} // namespace pdfcore

/// One revision of a file whose pages somebody uses: what the file held when it was inspected.
///
/// As long as a reference to it lives, its pages stay the same ones. When the engine replaces the
/// file, a revision in use is superseded: its content is kept in a private place first, read from
/// there, and removed with the last reference. A change by another program cannot be foreseen: from
/// then on, reading this revision fails instead of taking another one for it.
///
/// Made by PdfEditorBackend::inspectDocument(); immutable for its users, who may be on any thread.
class PdfFileRevision final
{
public:
    ~PdfFileRevision();
    PdfFileRevision(const PdfFileRevision &) = delete;
    PdfFileRevision &operator=(const PdfFileRevision &) = delete;

    /// The path that was inspected, also when the revision is superseded.
    [[nodiscard]] QString path() const;
    /// A number of its own for each revision of any file that this process has seen.
    [[nodiscard]] int generation() const;

    /// Removes superseded content that processes which are gone have kept. Any thread.
    static void removeLeftOvers();

private:
    friend class pdfcore::FileRevisions;
    explicit PdfFileRevision(std::unique_ptr<pdfcore::RevisionContent> content);

    std::unique_ptr<pdfcore::RevisionContent> m_content;
};

using PdfFileRevisionPtr = std::shared_ptr<const PdfFileRevision>;
