// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLatin1String>

/// The program's name, the same in every language.
inline constexpr QLatin1String kProgramName("Quillora");
/// The version that the build names.
inline constexpr QLatin1String kProgramVersion(QUILLORA_VERSION);
/// Resource path of the program's icon.
inline constexpr QLatin1String kProgramIcon(":/res/icons/modern/logo.png");
