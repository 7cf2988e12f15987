// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

/// The size of a file as a text: whole bytes and kilobytes, megabytes and gigabytes with two
/// decimals, of 1024 each.
[[nodiscard]] QString sizeText(qint64 bytes);
