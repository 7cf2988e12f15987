// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLatin1String>

/// Resource paths of the pictures that mean the same wherever they are shown.

/// A check box.
inline constexpr QLatin1String kCheckedIcon{":/res/checkbox/checkbox-checked.png"};
inline constexpr QLatin1String kUncheckedIcon{":/res/checkbox/checkbox-unchecked.png"};

/// A PDF file.
inline constexpr QLatin1String kPdfFileIcon{":/res/icons/modern/file-pdf.png"};
/// A folder.
inline constexpr QLatin1String kFolderIcon{":/res/icons/modern/folder.png"};
