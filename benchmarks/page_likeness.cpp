// SPDX-License-Identifier: AGPL-3.0-or-later
#include "benchmarks/page_likeness.h"

#include "pdfcore/pdf_editor_backend.h"

#include <QImage>

#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr double kScale = 150.0 / 72;
constexpr int kSide = 7;
constexpr double kLuminance = 0.01 * 255 * 0.01 * 255;
constexpr double kContrast = 0.03 * 255 * 0.03 * 255;
constexpr qint64 kMaxPixels = 40'000'000;

/// What is summed over squares: both pictures, their squares and their product.
constexpr std::size_t kSums = 5;
using Sums = std::array<double, kSums>;

Sums sumsOf(double a, double b)
{
    return {a, b, a * a, b * b, a * b};
}

void add(Sums &to, const Sums &other, double sign)
{
    for (std::size_t i = 0; i < kSums; ++i) {
        to[i] += sign * other[i];
    }
}

double likenessOf(const Sums &sums)
{
    constexpr double kCount = kSide * kSide;
    const double meanA = sums[0] / kCount;
    const double meanB = sums[1] / kCount;
    const double varianceA = sums[2] / kCount - meanA * meanA;
    const double varianceB = sums[3] / kCount - meanB * meanB;
    const double covariance = sums[4] / kCount - meanA * meanB;
    return (2 * meanA * meanB + kLuminance) * (2 * covariance + kContrast) /
           ((meanA * meanA + meanB * meanB + kLuminance) * (varianceA + varianceB + kContrast));
}

/// Both pictures are grey and have the same size.
double likeness(const QImage &a, const QImage &b)
{
    const int width = a.width();
    const int height = a.height();
    if (width < kSide || height < kSide) {
        return a == b ? 1 : 0;
    }
    // The sums of the last rows in each column; a square is seven of them.
    std::vector<Sums> columns(static_cast<std::size_t>(width));
    const auto addRow = [&](int y, double sign) {
        for (int x = 0; x < width; ++x) {
            add(columns[static_cast<std::size_t>(x)],
                sumsOf(a.constScanLine(y)[x], b.constScanLine(y)[x]), sign);
        }
    };
    double total = 0;
    for (int y = 0; y < height; ++y) {
        addRow(y, 1);
        if (y >= kSide) {
            addRow(y - kSide, -1);
        }
        if (y < kSide - 1) {
            continue;
        }
        Sums square{};
        for (int x = 0; x < width; ++x) {
            add(square, columns[static_cast<std::size_t>(x)], 1);
            if (x >= kSide) {
                add(square, columns[static_cast<std::size_t>(x - kSide)], -1);
            }
            if (x >= kSide - 1) {
                total += likenessOf(square);
            }
        }
    }
    return total / (static_cast<double>(width - kSide + 1) * (height - kSide + 1));
}

QImage rendered(const QString &path, qsizetype index, QSize size)
{
    PdfSourcePage page;
    page.filePath = path;
    page.pageIndex = static_cast<qint32>(index);
    return PdfEditorBackend::renderPage(page, size, nullptr, nullptr)
        .convertToFormat(QImage::Format_Grayscale8);
}

} // namespace

QList<double> pageLikeness(const QString &before, const QString &after, int most)
{
    QList<double> found;
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(before, {}, &info, nullptr, nullptr)) {
        return found;
    }
    for (qsizetype i = 0; i < qMin<qsizetype>(info.pageSizes.size(), most); ++i) {
        const QSizeF points = info.pageSizes.at(i);
        const QSize size(static_cast<int>(std::ceil(points.width() * kScale)),
                         static_cast<int>(std::ceil(points.height() * kScale)));
        const bool isHuge = qint64{size.width()} * size.height() > kMaxPixels;
        const QImage a = isHuge ? QImage() : rendered(before, i, size);
        if (!a.isNull()) {
            const QImage b = rendered(after, i, size);
            found.append(b.isNull() ? 0 : likeness(a, b));
        }
    }
    return found;
}
