// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "tests/support/pdf_fixture.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

/// Pages that carry a number of up to four digits as a pattern of colours, so that which page it
/// is and how it is turned can be read from its picture.
namespace MarkedPages {

/// What a picture of a page tells.
struct Mark
{
    int number = -1;
    int rotation = 0; ///< Clockwise, in degrees.

    friend bool operator==(const Mark &, const Mark &) = default;
};

inline constexpr Mark kBlank{-1, 0};
inline constexpr Mark kUnreadable{-2, 0};

/// A document of `count` pages that are numbered from `first`.
[[nodiscard]] QByteArray document(int first, int count);

/// The mark of a page by its picture.
[[nodiscard]] Mark markOf(const QImage &image);
/// The marks of pages as the engine renders them.
[[nodiscard]] QList<Mark> marksOf(const QList<PdfSourcePage> &pages);
/// The marks of the pages of a file as it is now; empty if it does not open.
[[nodiscard]] QList<Mark> marksIn(const QString &path, const QString &password = {});

/// The marks of unturned pages.
[[nodiscard]] QList<Mark> upright(const QList<int> &numbers);

} // namespace MarkedPages
