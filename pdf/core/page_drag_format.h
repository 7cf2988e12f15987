// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QByteArray>
#include <QLatin1String>
#include <QList>

#include <optional>

/// How dragged pages travel between the views of a document.
///
/// The payload is a plain sequence of page identifiers, eight bytes each, big-endian, without a
/// count and without a header.
namespace PageDragFormat {

inline constexpr QLatin1String kMimeType{"application/x-plenvo-page-id"};

/// The payload for `ids`, in order; an identifier that comes again is left out.
[[nodiscard]] QByteArray encode(const QList<PdfPageId> &ids);

/// The first identifier of a payload; nothing if the payload is too short to hold one.
[[nodiscard]] std::optional<PdfPageId> firstPageId(const QByteArray &payload);

} // namespace PageDragFormat
