// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

/// Names for results that are not taken yet.
namespace OutputNames {

/// "base.pdf" in the folder, or the next free "base(n).pdf", in native spelling. Nothing is
/// created.
[[nodiscard]] QString pdfFile(const QString &folder, const QString &base);

/// Creates a folder "base" in the folder, or the next free "base (n)", and returns its path with
/// forward slashes, whether that could be done or not.
[[nodiscard]] QString createFolder(const QString &folder, const QString &base);

} // namespace OutputNames
