// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/base/source_page.h"

#include <QList>
#include <QString>

#include <map>
#include <memory>

class Buffer;
class QPDF;

namespace pdfcore {

/// Some pages of one source document, with all that belongs to them, in memory: a document that
/// outputs with some of these pages are made of at a cost that grows with the extract and not with
/// the source.
///
/// An output made of an extract is the same as one made of the source itself: pruning to a few
/// pages what was pruned to more pages before leaves what pruning at once leaves. In memory because
/// it is not protected, whatever its source is. Does not change once made, so that any number of
/// threads may use it.
class DocumentExtract final
{
public:
    /// Makes an extract of the pages, none of which is blank; their rotations are left out.
    ///
    /// @param from  Where the pages come from; null for their file.
    /// Null on failure, with the error in `outcome`.
    static std::shared_ptr<const DocumentExtract>
    of(const QList<PdfSourcePage> &pages, const DocumentExtract *from, EngineError *outcome);

    /// Opens it for one output.
    [[nodiscard]] std::shared_ptr<QPDF> open() const;
    /// The same pages as pages of the document that open() opens.
    [[nodiscard]] QList<PdfSourcePage> located(QList<PdfSourcePage> pages) const;
    /// How many pages it has.
    [[nodiscard]] std::size_t pageCount() const { return m_indexes.size(); }
    /// Whether outputs are to be protected as the source is.
    [[nodiscard]] bool isProtected() const { return m_isProtected; }

    /// See OutputDocument::packsObjects().
    [[nodiscard]] bool packsObjects() const { return m_packsObjects; }

private:
    DocumentExtract() = default;

    std::shared_ptr<Buffer> m_content;
    std::map<qint32, qint32> m_indexes; ///< From pages of the source to those of the extract.
    bool m_isProtected = false;
    bool m_packsObjects = false;
};

} // namespace pdfcore
