// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/compress/raster.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace pdfcore {

/// What a JPEG picture says about itself.
struct JpegFacts
{
    int width = 0;
    int height = 0;
    int components = 0;
    int quality = 0;           ///< 1 to 100, as libjpeg counts, from the tables of quantization.
    bool isSubsampled = false; ///< There are fewer samples of colour than of brightness.
    /// Its colours are stored as brightness and differences, YCbCr or YCCK.
    bool isTransformed = false;
    bool saysTransform = false; ///< An Adobe or JFIF marker tells so (ISO 32000-2, 7.4.8).
};

/// How a JPEG picture is to be made.
struct JpegSettings
{
    int quality = 85;
    bool isSubsampled = false; ///< Half as many samples of colour in each direction.
    bool isTransformed = true; ///< For three or four components.
};

/// Takes a row of samples; false ends the reading.
using RowSink = std::function<bool(const std::uint8_t *)>;

// All functions are quiet. A picture with any damage is one that cannot be read: what a reader
// shows of it is up to that reader; neither is one that would take far too much memory or time.
// Once `cancel` is set they fail soon.

/// Nothing when it is no JPEG picture, or one of a kind that is not read here.
std::optional<JpegFacts> jpegFacts(const QByteArray &jpeg);

/// Reads the rows of a picture at its size divided by `denominator`, 1, 2, 4 or 8, rounded up: the
/// components as they are in the picture, but for YCbCr, which comes as RGB, and YCCK, as CMYK.
/// False when `sink` ended it too.
bool readJpeg(const QByteArray &jpeg, int denominator, const PdfCancelFlag &cancel,
              const RowSink &sink);

/// Makes a JPEG picture of 1, 3 or 4 components; empty on failure.
QByteArray newJpeg(const Raster &raster, const JpegSettings &settings, const PdfCancelFlag &cancel);

/// The same picture, to the last bit, in fewer bytes if that is possible; empty on failure.
QByteArray repackedJpeg(const QByteArray &jpeg, const PdfCancelFlag &cancel);

} // namespace pdfcore
