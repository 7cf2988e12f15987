// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

/// Files that the benchmarks make for themselves. Each returns false when it could not be written.
namespace SampleFiles {

/// `pages` pages of text in a flat page tree, A4.
bool writeText(const QString &path, int pages);

/// `pages` scanned pages: each one grey JPEG picture of its own, A4 at 200 dpi.
bool writeScan(const QString &path, int pages);

/// `count` photographs of 3 megapixels as JPEG files in the folder, no two with equal bytes.
bool writePhotographs(const QString &folder, int count);

} // namespace SampleFiles
