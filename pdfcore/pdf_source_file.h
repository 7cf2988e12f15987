#pragma once

#include <QString>
#include <QtGlobal>

#include <memory>

namespace pdfcore {
class SourceFiles;
struct SourceContent;
} // namespace pdfcore

/// One state of a file whose pages somebody uses: what the file held when it was inspected.
///
/// As long as a reference to it lives, its pages stay the same ones. When the engine replaces the
/// file, the old content is set aside in a private place first and read from there; it is removed
/// with the last reference. A change by another program cannot be foreseen: from then on, reading
/// this state fails instead of taking the new content for the old.
///
/// Made by PdfEditorBackend::inspectDocument(); immutable for its users, who may be on any thread.
class PdfSourceFile final
{
public:
    ~PdfSourceFile();
    PdfSourceFile(const PdfSourceFile &) = delete;
    PdfSourceFile &operator=(const PdfSourceFile &) = delete;

    /// The path that was inspected, also when the content is elsewhere now.
    [[nodiscard]] QString path() const;
    /// Tells the states of one file apart: 0 for the first that this process has seen.
    [[nodiscard]] int generation() const;

    /// Removes content that processes which are gone have set aside. Any thread.
    static void removeLeftOvers();

private:
    friend class pdfcore::SourceFiles;
    explicit PdfSourceFile(std::unique_ptr<pdfcore::SourceContent> content);

    std::unique_ptr<pdfcore::SourceContent> m_content;
};

using PdfSourceFilePtr = std::shared_ptr<const PdfSourceFile>;
