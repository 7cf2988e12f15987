// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/core/render_bench.h"

namespace RenderBench {

PdfPageRecord page(PdfPageId id, qint32 sourceIndex)
{
    PdfPageRecord record;
    record.id = id;
    record.sourcePath = QStringLiteral("/documents/report.pdf");
    record.password = QStringLiteral("secret");
    record.sourcePageIndex = sourceIndex;
    record.pageSize = QSizeF(595, 842);
    return record;
}

} // namespace RenderBench
