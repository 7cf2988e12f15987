// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_drag_format.h"

#include <QDataStream>
#include <QIODevice>
#include <QSet>

QByteArray PageDragFormat::encode(const QList<PdfPageId> &ids)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    QSet<PdfPageId> written;
    for (const PdfPageId id : ids) {
        if (!written.contains(id)) {
            written.insert(id);
            stream << id;
        }
    }
    return payload;
}

std::optional<PdfPageId> PageDragFormat::firstPageId(const QByteArray &payload)
{
    QDataStream stream(payload);
    PdfPageId id = 0;
    stream >> id;
    if (stream.status() != QDataStream::Ok) {
        return std::nullopt;
    }
    return id;
}
