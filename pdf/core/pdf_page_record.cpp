// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_page_record.h"

#include "pdf/core/page_rotation.h"

QSizeF PdfPageRecord::displaySize() const
{
    const int turn = withoutFullTurns(rotation);
    return turn == 90 || turn == 270 ? pageSize.transposed() : pageSize;
}

PdfPageAppearance PdfPageRecord::appearance() const
{
    return {sourcePath, revision ? revision->generation() : 0, sourcePageIndex, rotation,
            origin == PdfPageOrigin::Blank};
}

PdfSourcePage PdfPageRecord::toSourcePage() const
{
    PdfSourcePage page;
    page.filePath = sourcePath;
    page.password = password;
    page.pageIndex = sourcePageIndex;
    page.rotation = rotation;
    page.pageSize = pageSize;
    page.revision = revision;
    page.isBlank = origin == PdfPageOrigin::Blank;
    return page;
}
