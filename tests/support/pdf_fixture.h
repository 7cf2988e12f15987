// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>

/// Small PDF files made by the tests themselves.
namespace PdfFixture {

/// One page to make. Boxes and sizes are in points.
struct Page
{
    QRectF mediaBox{0, 0, 200, 300};
    QRectF cropBox;      ///< Left out when empty.
    int rotate = 0;      ///< The page's own /Rotate.
    double userUnit = 1; ///< Left out when 1.
    QByteArray content;  ///< Content stream operators.
};

/// Operators that fill the rectangle with a colour, in the page's own coordinates.
QByteArray fill(const QRectF &rect, const QColor &colour);

/// A page of the given size whose lower left quarter is red, lower right green, upper left blue
/// and upper right yellow, as seen without rotation.
Page quartered(const QSizeF &size);

/// A page of the given size filled with one colour.
Page plain(const QSizeF &size, const QColor &colour);

/// The colour that marks page `index` in pagesByNumber().
QColor numberColour(int index);

/// A document of the given pages.
QByteArray document(const QList<Page> &pages);

/// A document of `count` pages of 200 × 300 points, each filled with numberColour() of its index.
QByteArray pagesByNumber(int count);

/// A PDF put together from the bodies of its objects, right or wrong as they are: element i is
/// object i + 1, and object 1 is the catalogue. `trailerEntries` are added to the trailer.
QByteArray fromObjects(const QList<QByteArray> &bodies, const QByteArray &trailerEntries = {});

/// The body of a stream object with the given dictionary entries besides its length.
QByteArray streamBody(const QByteArray &entries, const QByteArray &data);

/// A document with one page of 200 × 200 points. `resources` is the body of the page's resource
/// dictionary, which names the `more` objects from number 5 on; `pageEntries` are added to the
/// page.
QByteArray onePage(const QByteArray &content, const QByteArray &resources = {},
                   const QList<QByteArray> &more = {}, const QByteArray &pageEntries = {});

/// How a fixture is encrypted.
struct Encryption
{
    QByteArray userPassword; ///< As bytes in the file's own encoding.
    QByteArray ownerPassword;
    int revision = 6; ///< 3 to 6.
};

/// The same document, encrypted.
QByteArray encrypted(const QByteArray &document, const Encryption &encryption);

/// Writes a file; false when it could not be written whole.
bool write(const QString &path, const QByteArray &data);

} // namespace PdfFixture
