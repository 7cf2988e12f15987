// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/marked_pages.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace MarkedPages {

namespace {

constexpr int kBase = 100;
constexpr int kWidth = 200;
constexpr int kHeight = 300;
constexpr int kCorners = 4;

/// Pictures in printed files are stored with losses; the colours of digits are far apart.
constexpr int kTolerance = 8;

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) <= kTolerance &&
           std::abs(a.green() - b.green()) <= kTolerance &&
           std::abs(a.blue() - b.blue()) <= kTolerance;
}

/// Black is the mark of the upper left corner, and numbers have other colours.
QColor digitColour(int digit)
{
    return PdfFixture::numberColour(digit + 1);
}

int digitOf(const QColor &colour)
{
    for (int digit = 0; digit < kBase; ++digit) {
        if (isNear(colour, digitColour(digit))) {
            return digit;
        }
    }
    return -1;
}

/// The colours of the corners clockwise from the upper left.
std::array<QColor, kCorners> cornersOf(const QImage &image)
{
    const int left = image.width() / 4;
    const int right = image.width() - 1 - left;
    const int top = image.height() / 4;
    const int bottom = image.height() - 1 - top;
    return {image.pixelColor(left, top), image.pixelColor(right, top),
            image.pixelColor(right, bottom), image.pixelColor(left, bottom)};
}

} // namespace

Mark markOf(const QImage &image)
{
    if (image.isNull()) {
        return kUnreadable;
    }
    const auto corners = cornersOf(image);
    if (std::all_of(corners.begin(), corners.end(),
                    [](const QColor &colour) { return isNear(colour, Qt::white); })) {
        return kBlank;
    }
    for (int turn = 0; turn < kCorners; ++turn) {
        const auto corner = [&](int index) {
            return corners[static_cast<std::size_t>((index + turn) % kCorners)];
        };
        const int low = digitOf(corner(1));
        const int high = digitOf(corner(3));
        if (isNear(corner(0), Qt::black) && isNear(corner(2), Qt::white) && low >= 0 && high >= 0) {
            return {high * kBase + low, turn * 90};
        }
    }
    return kUnreadable;
}

QByteArray document(int first, int count)
{
    QList<PdfFixture::Page> pages;
    for (int number = first; number < first + count; ++number) {
        constexpr double kMiddle = kWidth / 2.0;
        constexpr double kHalf = kHeight / 2.0;
        PdfFixture::Page page;
        page.mediaBox = QRectF(0, 0, kWidth, kHeight);
        page.content =
            PdfFixture::fill(QRectF(0, kHalf, kMiddle, kHalf), Qt::black) +
            PdfFixture::fill(QRectF(kMiddle, kHalf, kMiddle, kHalf), digitColour(number % kBase)) +
            PdfFixture::fill(QRectF(0, 0, kMiddle, kHalf), digitColour(number / kBase));
        pages.append(page);
    }
    return PdfFixture::document(pages);
}

QList<Mark> marksOf(const QList<PdfSourcePage> &pages)
{
    QList<Mark> marks;
    const QList<QSize> sizes(pages.size(), QSize(16, 16));
    for (const QImage &image : PdfEditorBackend::renderPages(pages, sizes, nullptr)) {
        marks.append(markOf(image));
    }
    return marks;
}

QList<Mark> marksIn(const QString &path, const QString &password)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, password, &info, nullptr, nullptr)) {
        return {};
    }
    QList<PdfSourcePage> pages(info.pageSizes.size());
    for (qsizetype i = 0; i < pages.size(); ++i) {
        pages[i].filePath = path;
        pages[i].password = password;
        pages[i].pageIndex = static_cast<qint32>(i);
    }
    return marksOf(pages);
}

QList<Mark> upright(const QList<int> &numbers)
{
    QList<Mark> marks;
    for (const int number : numbers) {
        marks.append({number, 0});
    }
    return marks;
}

} // namespace MarkedPages
