// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/base/source_page.h"
#include "pdfcore/src/save/source/source_document.h"

#include <qpdf/PDFVersion.hh>

#include <map>
#include <memory>
#include <utility>

class QTemporaryFile;

namespace pdfcore {

/// The source documents of one output, opened once each and open until it is gone.
class OutputSources
{
public:
    /// @param only  Where all pages come from, whatever file they name; null for their files.
    explicit OutputSources(const std::shared_ptr<QPDF> &only = {});
    ~OutputSources();
    OutputSources(const OutputSources &) = delete;
    OutputSources &operator=(const OutputSources &) = delete;

    /// The source document of a page, which has that page. Null on failure, with the error in
    /// `outcome`.
    SourceDocument *get(const PdfSourcePage &page, EngineError *outcome);

    /// The highest PDF version that a source document asks for.
    [[nodiscard]] PDFVersion version() const;

private:
    struct OpenFile
    {
        std::unique_ptr<QTemporaryFile> repairedFile; ///< What is read instead, if anything.
        std::unique_ptr<SourceDocument> document;
    };

    /// Opens a file, by way of a repaired copy where that is needed to have all its pages.
    static EngineError open(const QString &path, const QString &password, OpenFile *file);
    OpenFile *file(const PdfSourcePage &page, EngineError *outcome);

    std::unique_ptr<OpenFile> m_only;
    std::map<std::pair<QString, QString>, OpenFile> m_files; ///< By path and password.
};

} // namespace pdfcore
