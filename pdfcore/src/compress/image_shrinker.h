// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/compress/image_facts.h"
#include "pdfcore/src/compress/image_uses.h"
#include "pdfcore/src/compress/jpeg_codec.h"
#include "pdfcore/src/compress/raster.h"
#include "pdfcore/src/compress/sample_reader.h"

#include <QByteArray>

#include <optional>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// What is made of images.
struct ImageAims
{
    double dotsPerInch = 200;  ///< Of images that have more than one and a half times as many.
    int quality = 85;          ///< Of JPEG, from 1 to 100.
    bool isSubsampled = false; ///< JPEG always has fewer samples of colour than of brightness.
    /// The least ratio of the largest sample to the mean error, in dB, at which samples that came
    /// without loss may become JPEG.
    double leastRatio = 32;
};

/// What an image becomes; its colour space stays, or is the base of the palette that it had.
struct NewImage
{
    QByteArray data;
    int width = 0;
    int height = 0;
    int components = 0;
    bool isJpeg = false;     ///< Else deflated samples,
    bool hasFilters = false; ///< each row of which has been through a PNG filter.
};

/// Finds smaller forms of images.
class ImageShrinker
{
public:
    ImageShrinker(ImageAims aims, PdfCancelFlag cancel)
        : m_aims(aims)
        , m_cancel(std::move(cancel))
    {}

    /// Nothing when no form is smaller by at least a tenth.
    ///
    /// @param use  Null when it is not known: the image stays what it is to the last sample.
    /// @param isBound  Its samples go with those of another image, one by one.
    std::optional<NewImage> shrink(QPDFObjectHandle image, const ImageUse *use, bool isBound) const;

private:
    struct Size
    {
        int width = 0;
        int height = 0;
    };

    [[nodiscard]] Size sizeFor(const ImageFacts &facts, const ImageUse &use,
                               double dotsPerInch) const;
    [[nodiscard]] std::optional<NewImage> shrinkJpeg(QPDFObjectHandle image,
                                                     const ImageFacts &facts, const ImageUse *use,
                                                     bool isExact) const;
    [[nodiscard]] std::optional<NewImage>
    shrinkSamples(QPDFObjectHandle image, const ImageFacts &facts, const ImageUse &use) const;
    [[nodiscard]] std::optional<NewImage>
    shrinkDrawing(QPDFObjectHandle image, const ImageFacts &facts, const ImageUse &use) const;
    [[nodiscard]] std::optional<NewImage> packedIfWorthwhile(const Raster &raster,
                                                             qsizetype before) const;
    [[nodiscard]] std::optional<Raster> scaledSamples(QPDFObjectHandle image,
                                                      const ImageFacts &facts, Size size,
                                                      ColourCount *colours) const;
    [[nodiscard]] std::optional<Raster> scaledJpeg(const QByteArray &jpeg, const JpegFacts &facts,
                                                   Size size) const;
    [[nodiscard]] bool isFaithful(const QByteArray &jpeg, const Raster &raster) const;

    ImageAims m_aims;
    PdfCancelFlag m_cancel;
};

} // namespace pdfcore
