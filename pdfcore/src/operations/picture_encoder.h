// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>

#include <functional>

namespace pdfcore {

/// What a picture consists of: 8 bits per component, packed; the opacity comes last and the colours
/// are not multiplied by it.
enum class PixelKind { Gray = 1, GrayAlpha = 2, Rgb = 3, Rgba = 4 };

/// Bytes of a pixel.
[[nodiscard]] constexpr int bytesOf(PixelKind kind)
{
    return static_cast<int>(kind);
}

struct PictureForm
{
    QSize size;
    PixelKind pixels = PixelKind::Rgb;
    double dpi = 0; ///< Pixels per inch; 0: the file does not say.
};

/// Takes bytes of a file; false when they cannot be written. Does not throw.
using PictureSink = std::function<bool(const char *data, qsizetype size)>;

/// Makes the bytes of a picture file of rows of pixels. One thread at a time.
class PictureEncoder
{
public:
    PictureEncoder() = default;
    virtual ~PictureEncoder() = default;
    PictureEncoder(const PictureEncoder &) = delete;
    PictureEncoder &operator=(const PictureEncoder &) = delete;

    /// Adds `count` rows, from the top; false on failure, after which nothing else is to be called.
    virtual bool addRows(const unsigned char *rows, qsizetype bytesPerRow, int count) = 0;
    /// After all rows; false on failure.
    virtual bool finish() = 0;
    /// Why it failed.
    [[nodiscard]] virtual QString reason() const = 0;
};

} // namespace pdfcore
