// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/source_pages.h"

#include <QFileInfo>

namespace pdfcore {

EngineError addPages(const QString &source, const QString &password, QList<PdfSourcePage> *pages)
{
    PdfDocumentInfo info;
    EngineError error;
    if (!PdfEditorBackend::inspectDocument(source, password, &info, &error.code, &error.message)) {
        return error;
    }
    PdfSourcePage page;
    page.filePath = source;
    page.password = password;
    page.revision = info.revision;
    for (qsizetype i = 0; i < info.pageSizes.size(); ++i) {
        page.pageIndex = static_cast<qint32>(i);
        page.pageSize = info.pageSizes.at(i);
        pages->append(page);
    }
    return {};
}

PdfFileRevisionPtr replacedRevision(const QList<PdfSourcePage> &pages,
                                    const PdfPlacement &placement)
{
    const bool replacesSource =
        placement.isReplacing() && !pages.isEmpty() &&
        QFileInfo(placement.path()) == QFileInfo(pages.constFirst().filePath);
    return replacesSource ? pages.constFirst().revision : PdfFileRevisionPtr();
}

} // namespace pdfcore
