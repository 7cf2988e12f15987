// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"

#include "tests/support/pdf_fixture.h"

#include <QImage>
#include <QSize>

#include <algorithm>
#include <cstdlib>

namespace PageNumbers {

namespace {

constexpr int kNumberCount = 125;

int distance(const QColor &a, const QColor &b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                     std::abs(a.blue() - b.blue())});
}

} // namespace

int numberOf(const QColor &colour, int tolerance)
{
    if (distance(colour, Qt::white) <= tolerance) {
        return kWhite;
    }
    for (int number = 0; number < kNumberCount; ++number) {
        if (distance(colour, PdfFixture::numberColour(number)) <= tolerance) {
            return number;
        }
    }
    return kUnknown;
}

QList<int> numbersOf(const QList<PdfSourcePage> &pages)
{
    QList<int> numbers;
    const QList<QSize> sizes(pages.size(), QSize(4, 4));
    for (const QImage &image : PdfEditorBackend::renderPages(pages, sizes, nullptr)) {
        numbers.append(image.isNull() ? kFailed : numberOf(image.pixelColor(2, 2)));
    }
    return numbers;
}

QList<int> numbersIn(const QString &path, const QString &password)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, password, &info, nullptr, nullptr)) {
        return {};
    }
    QList<PdfSourcePage> pages;
    for (const QSizeF &size : std::as_const(info.pageSizes)) {
        PdfSourcePage page;
        page.filePath = path;
        page.password = password;
        page.pageIndex = static_cast<qint32>(pages.size());
        page.pageSize = size;
        page.revision = info.revision;
        pages.append(page);
    }
    return numbersOf(pages);
}

QByteArray documentOf(const QList<int> &numbers)
{
    QList<PdfFixture::Page> pages;
    for (const int number : numbers) {
        pages.append(PdfFixture::plain({200, 300}, PdfFixture::numberColour(number)));
    }
    return PdfFixture::document(pages);
}

} // namespace PageNumbers
