// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

namespace pdfcore {

/// Bytes of one stream that are compressed anew; larger ones stay as they are.
inline constexpr qsizetype kMaxPackedBytes = qsizetype{256} * 1024 * 1024;

/// How hard to try; each is several times slower than the one before.
enum class Effort { Least, Good, Best };

/// The bytes in the format of zlib (RFC 1950); empty when memory runs out.
QByteArray deflated(const QByteArray &bytes, Effort effort);

/// What such bytes stand for. Nothing when there is any damage, or when it is more than
/// kMaxPackedBytes. What follows is left aside.
std::optional<QByteArray> inflated(const QByteArray &bytes);

/// Rows of samples, each after the number of the PNG filter that it has been through (ISO 32000-2,
/// 7.4.4.4, predictor 15), the one that promises the smallest result.
QByteArray filteredRows(const QByteArray &samples, int components, int width);

} // namespace pdfcore
