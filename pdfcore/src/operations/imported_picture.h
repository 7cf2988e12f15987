// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImageIOHandler>
#include <QSize>

#include <cstddef>
#include <functional>

namespace pdfcore {

/// Takes the bytes of a stream, piece by piece.
using ByteSink = std::function<void(const unsigned char *bytes, std::size_t count)>;

/// How the samples of a picture get into a document.
enum class PictureCoding {
    Jpeg,    ///< The whole file, for /DCTDecode.
    PngData, ///< The image data of a PNG file, for /FlateDecode with the predictors of PNG.
    PngRows, ///< The rows of a PNG file, compressed anew in the same way.
    Decoded, ///< The rows of what Qt makes of a file, compressed in the same way.
};

/// What a document has to say about a picture.
struct ImportedPicture
{
    PictureCoding coding = PictureCoding::Jpeg;
    QSize pixels; ///< As it is stored.
    int bits = 8; ///< Of one component.
    /// Of its colour space: 1 is grey, 3 RGB, 4 CMYK. With a palette it is the space of that.
    int components = 3;
    QByteArray palette;           ///< Three bytes for each colour; empty without a palette.
    QByteArray profile;           ///< An ICC profile as it was found; may be empty.
    int maskBits = 0;             ///< Of its opacity; 0 where it has none.
    bool isInverted = false;      ///< A JPEG whose components are 0 for full ink.
    bool isUntransformed = false; ///< A JPEG of RGB, of which its data says nothing.
    QImageIOHandler::Transformations orientation = QImageIOHandler::TransformationNone;

    /// Samples of one pixel.
    [[nodiscard]] int channels() const { return palette.isEmpty() ? components : 1; }
};

} // namespace pdfcore
