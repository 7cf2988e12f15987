// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLatin1String>

/// What a viewer calls the tools that it asks others for.
namespace ExternalTools {

inline constexpr QLatin1String kCompress{"compress"};
inline constexpr QLatin1String kImages{"images"};
inline constexpr QLatin1String kEncrypt{"encrypt"};
inline constexpr QLatin1String kDecrypt{"decrypt"};
inline constexpr QLatin1String kPageNumber{"page-number"};
inline constexpr QLatin1String kSearch{"search"};

} // namespace ExternalTools
