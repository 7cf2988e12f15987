// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QSize>

#include <functional>

/// Small picture files made by the tests themselves.
namespace PictureFixture {

/// The values of the samples of a pixel, 0 to 255 each, or of 16 bits.
using Pixel = QList<int>;

/// What the pixel at a place is like.
using Pixels = std::function<Pixel(int x, int y)>;

/// Four quarters of one colour each: top left, top right, bottom left, bottom right.
Pixels quartered(QSize size, const QList<Pixel> &colours);

/// How a JPEG file is written.
struct Jpeg
{
    enum class Colours {
        Gray,
        YCbCr,      ///< With the marker of JFIF; pixels are RGB.
        Rgb,        ///< Without any marker, by the names of the components alone.
        AdobeRgb,   ///< With Adobe's marker.
        AdobeYCbCr, ///< With Adobe's marker, and components with names of RGB.
        Cmyk,       ///< Without any marker; pixels are ink.
        AdobeCmyk,  ///< With Adobe's marker; pixels are darkness, 255 less the ink.
        AdobeYcck,
    };

    Colours colours = Colours::YCbCr;
    QSize size{32, 32};
    bool isProgressive = false;
    int orientation = 0; ///< EXIF's number; left out when 0.
    QByteArray profile;  ///< Left out when empty.
};

QByteArray jpeg(const Jpeg &form, const Pixels &pixels);

/// How a PNG file is written.
struct Png
{
    int colourType = 2; ///< 0 grey, 2 RGB, 3 palette, 4 grey with alpha, 6 RGBA.
    int bits = 8;
    QSize size{32, 32};
    bool isInterlaced = false;
    QByteArray palette;      ///< Three bytes for each colour.
    QByteArray transparency; ///< The content of tRNS; left out when empty.
    QByteArray profile;      ///< Left out when empty.
    int orientation = 0;     ///< EXIF's number; left out when 0.
    int dataChunks = 1;      ///< How many chunks the image data are divided into.
};

QByteArray png(const Png &form, const Pixels &pixels);

/// A chunk with its length and check sum.
QByteArray pngChunk(const QByteArray &type, const QByteArray &content);

/// The signature, the header and one chunk of image data, whatever they are.
QByteArray pngOf(const Png &form, const QByteArray &imageData);

/// What the chunks of image data of a PNG file contain.
QByteArray imageDataOf(const QByteArray &png);

/// The samples of rows of pixels, packed as PNG and PDF have them.
QByteArray samplesOf(QSize size, int bits, const Pixels &pixels);

} // namespace PictureFixture
