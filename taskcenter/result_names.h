// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_operation.h"

#include <QString>

namespace ResultNames {

/// A new file at `path`, or where that is taken, at the next free "name(n).pdf" beside it.
///
/// `base` is what the name was made of: where it is "base(n)" already, the count goes on from n.
PdfPlacement newFile(const QString &path, const QString &base);

/// A new file "base.pdf" in a folder that exists, or the next free "base(n).pdf".
PdfPlacement newFileIn(const QString &folder, const QString &base);

} // namespace ResultNames
