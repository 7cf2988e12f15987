// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/side_panel/page_output_plan.h"

#include <algorithm>
#include <numeric>

namespace {

QString numberedName(const QString &baseName, int number)
{
    // In one go: the base name may hold place markers of its own.
    return QStringLiteral("%1-%2.pdf").arg(baseName, QString::number(number));
}

QList<int> rowsFrom(int first, int end)
{
    QList<int> rows(std::max(end - first, 0));
    std::iota(rows.begin(), rows.end(), first);
    return rows;
}

QList<int> usableCuts(QList<int> rows, int pageCount)
{
    rows.removeIf([pageCount](int row) { return row < 1 || row >= pageCount; });
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

} // namespace

QList<PageOutputFile> planExtract(const QString &baseName, const QList<int> &rows, bool combine)
{
    if (combine && rows.size() >= 2) {
        return {{QStringLiteral("%1-extracted.pdf").arg(baseName), rows}};
    }
    QList<PageOutputFile> files;
    files.reserve(rows.size());
    for (const int row : rows) {
        files.append({numberedName(baseName, row + 1), {row}});
    }
    return files;
}

QList<PageOutputFile> planSplit(const QString &baseName, int pageCount, bool everyPage,
                                const QList<int> &beforeRows)
{
    QList<int> boundaries = everyPage ? rowsFrom(1, pageCount) : usableCuts(beforeRows, pageCount);
    if (boundaries.isEmpty()) {
        return {};
    }
    boundaries.append(pageCount);

    QList<PageOutputFile> files;
    files.reserve(boundaries.size());
    int start = 0;
    for (const int boundary : std::as_const(boundaries)) {
        files.append({numberedName(baseName, static_cast<int>(files.size()) + 1),
                      rowsFrom(start, boundary)});
        start = boundary;
    }
    return files;
}
