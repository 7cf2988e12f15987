// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QColor>
#include <QList>
#include <QString>

/// Reads back the numbers that the pages of PdfFixture::pagesByNumber() carry as their colours.
namespace PageNumbers {

/// A page that is white, as a blank one.
inline constexpr int kWhite = -1;
/// A page that could not be rendered.
inline constexpr int kFailed = -2;
/// Any other page.
inline constexpr int kUnknown = -3;

/// The number of a colour whose channels are off by no more than `tolerance`.
[[nodiscard]] int numberOf(const QColor &colour, int tolerance = 2);
[[nodiscard]] QList<int> numbersOf(const QList<PdfSourcePage> &pages);
/// The numbers of the pages of a file as it is now; empty if it does not open.
[[nodiscard]] QList<int> numbersIn(const QString &path, const QString &password = {});

/// A document of one plain page for each number.
[[nodiscard]] QByteArray documentOf(const QList<int> &numbers);

} // namespace PageNumbers
