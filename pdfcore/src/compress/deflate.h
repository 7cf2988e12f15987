// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <QByteArray>

#include <optional>

namespace pdfcore {

/// Bytes of one stream that are compressed anew; larger ones stay as they are.
inline constexpr qsizetype kMaxPackedBytes = qsizetype{256} * 1024 * 1024;

/// How hard to try; each is several times slower than the one before.
enum class Effort { Least, Good, Best };

/// The bytes in the format of zlib (RFC 1950); empty when memory runs out, and soon after `cancel`
/// is set. The best effort is one that cannot be cancelled.
QByteArray deflated(const QByteArray &bytes, Effort effort, const PdfCancelFlag &cancel);

/// What such bytes stand for. Nothing when there is any damage, or when it is more than
/// kMaxPackedBytes. What follows is left aside.
std::optional<QByteArray> inflated(const QByteArray &bytes);

/// Rows of samples, each after the number of the PNG filter that it has been through (ISO 32000-2,
/// 7.4.4.4, predictor 15), the one that promises the smallest result. Empty once `cancel` is set.
QByteArray filteredRows(const QByteArray &samples, int components, int width,
                        const PdfCancelFlag &cancel);

} // namespace pdfcore
