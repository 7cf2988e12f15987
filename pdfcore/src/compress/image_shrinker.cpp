// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/image_shrinker.h"

#include "pdfcore/src/compress/area_scaler.h"
#include "pdfcore/src/compress/deflate.h"
#include "pdfcore/src/compress/sample_reader.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace pdfcore {

namespace {

/// How many times more dots to an inch an image has before it is made smaller.
constexpr double kSlack = 1.5;
/// What an image may have of its size to be worth a change.
constexpr double kWorthwhile = 0.9;
/// Quality of JPEG beyond the one aimed at from which the difference is worth it.
constexpr int kQualityStep = 4;
/// Compressed bytes of an image below which nothing is to be gained.
constexpr qsizetype kLeastBytes = 2048;
/// Samples of an image in its new size that are held in memory.
constexpr long long kMaxSamples = 300'000'000;
/// Bytes that a pixel takes in JPEG at least, even if all have one colour.
constexpr double kLeastJpeg = 0.01;
/// How many times smaller JPEG is than a quick try without loss when no other can compete.
constexpr qsizetype kClearly = 3;
/// Colours up to which a picture is a drawing, in which every one counts.
constexpr std::size_t kFewColours = 256;
constexpr std::size_t kFewGreys = 24;
/// Bytes that a pixel takes without loss from which it is a photograph in few colours all the same.
constexpr double kBusy = 0.5;
/// How many times more dots to an inch than a photograph a drawing is left with: its edges are
/// sharp.
constexpr double kDrawingFactor = 1.5;

long long samplesOf(int width, int height, int components)
{
    return static_cast<long long>(width) * height * components;
}

/// Bytes that an image takes in its file.
qsizetype storedBytes(QPDFObjectHandle image)
{
    QPDFObjectHandle length = image.getDict().getKey("/Length");
    return static_cast<qsizetype>(length.isInteger() ? length.getIntValue() : 0);
}

bool isWorthwhile(qsizetype size, qsizetype before)
{
    return size > 0 && static_cast<double>(size) <= kWorthwhile * static_cast<double>(before);
}

/// Whether all that tells how the colours of a JPEG picture are stored agrees (ISO 32000-2, 7.4.8):
/// what comes of it says so by itself.
bool isCertain(QPDFObjectHandle image, const JpegFacts &facts)
{
    QPDFObjectHandle transform = entryOf(lastParameters(image), "/ColorTransform");
    if (facts.saysTransform || facts.components == 1) {
        return true;
    }
    const long long wanted =
        transform.isInteger() ? transform.getIntValue() : (facts.components == 3 ? 1 : 0);
    return (wanted != 0) == facts.isTransformed;
}

NewImage newImage(const QByteArray &data, const Raster &raster, bool isJpeg)
{
    return {data, raster.width, raster.height, raster.components, isJpeg, false};
}

QByteArray samplesIn(const Raster &raster)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(raster.samples.data()),
                                   static_cast<qsizetype>(raster.samples.size()));
}

/// The samples without loss, in that of two forms which promises to be smaller.
NewImage packed(const Raster &raster, const PdfCancelFlag &cancel)
{
    const QByteArray samples = samplesIn(raster);
    const QByteArray rows = filteredRows(samples, raster.components, raster.width, cancel);
    const bool isFiltered = deflated(rows, Effort::Least, cancel).size() <
                            deflated(samples, Effort::Least, cancel).size();
    NewImage image =
        newImage(deflated(isFiltered ? rows : samples, Effort::Good, cancel), raster, false);
    image.hasFilters = isFiltered;
    return image;
}

} // namespace

std::optional<NewImage> ImageShrinker::shrink(QPDFObjectHandle image, const ImageUse *use,
                                              bool isBound) const
{
    const std::optional<ImageFacts> facts = imageFacts(image);
    if (!facts) {
        return std::nullopt;
    }
    const bool isExact =
        isBound || use == nullptr || use->isInGlyph || (!use->isDrawn && !use->isSoftMask);
    if (facts->isJpeg) {
        return shrinkJpeg(image, *facts, use, isExact);
    }
    return isExact ? std::nullopt : shrinkSamples(image, *facts, *use);
}

ImageShrinker::Size ImageShrinker::sizeFor(const ImageFacts &facts, const ImageUse &use,
                                           double dotsPerInch) const
{
    if (!(use.dotsPerInch > kSlack * dotsPerInch)) {
        return {facts.width, facts.height};
    }
    const double factor = dotsPerInch / use.dotsPerInch;
    const auto side = [factor](int length) {
        return std::clamp(static_cast<int>(std::lround(length * factor)), 1, length);
    };
    return {side(facts.width), side(facts.height)};
}

std::optional<NewImage> ImageShrinker::shrinkJpeg(QPDFObjectHandle image, const ImageFacts &facts,
                                                  const ImageUse *use, bool isExact) const
{
    const QByteArray jpeg = dataOfLastFilter(image);
    // A picture that has been packed once more may take less than it does by itself.
    const qsizetype before = storedBytes(image);
    const std::optional<JpegFacts> found = jpegFacts(jpeg);
    const bool isSound = jpeg.size() >= kLeastBytes && found && found->width == facts.width &&
                         found->height == facts.height && found->components == facts.components &&
                         isCertain(image, *found);
    if (!isSound) {
        return std::nullopt;
    }
    const Size size =
        isExact ? Size{facts.width, facts.height} : sizeFor(facts, *use, m_aims.dotsPerInch);
    const bool isSmaller = size.width < facts.width || size.height < facts.height;
    if (!isExact && (isSmaller || found->quality >= m_aims.quality + kQualityStep)) {
        if (const std::optional<Raster> raster = scaledJpeg(jpeg, *found, size)) {
            JpegSettings settings;
            settings.quality =
                isSmaller ? m_aims.quality : std::min(m_aims.quality, found->quality);
            settings.isSubsampled = m_aims.isSubsampled || found->isSubsampled;
            settings.isTransformed = facts.isColour;
            const QByteArray made = newJpeg(*raster, settings, m_cancel);
            if (isWorthwhile(made.size(), before)) {
                return newImage(made, *raster, true);
            }
        }
    }
    const QByteArray repacked = repackedJpeg(jpeg, m_cancel);
    if (!isWorthwhile(repacked.size(), before)) {
        return std::nullopt;
    }
    return NewImage{repacked, facts.width, facts.height, facts.components, true, false};
}

std::optional<Raster> ImageShrinker::scaledJpeg(const QByteArray &jpeg, const JpegFacts &facts,
                                                Size size) const
{
    if (samplesOf(size.width, size.height, facts.components) > kMaxSamples) {
        return std::nullopt;
    }
    // What the transformation of JPEG does is a good part of the way at no cost.
    const auto divided = [](int length, int by) { return (length + by - 1) / by; };
    int denominator = 1;
    while (denominator < 8 && divided(facts.width, denominator * 2) >= size.width &&
           divided(facts.height, denominator * 2) >= size.height) {
        denominator *= 2;
    }
    AreaScaler scaler(facts.components, divided(facts.width, denominator),
                      divided(facts.height, denominator), size.width, size.height);
    const bool isRead = readJpeg(jpeg, denominator, m_cancel, [&](const std::uint8_t *row) {
        scaler.addRow(row);
        return !m_cancel.isSet();
    });
    if (!isRead || !scaler.isComplete()) {
        return std::nullopt;
    }
    return scaler.takeResult();
}

std::optional<Raster> ImageShrinker::scaledSamples(QPDFObjectHandle image, const ImageFacts &facts,
                                                   Size size, ColourCount *colours) const
{
    if (samplesOf(size.width, size.height, facts.components) > kMaxSamples) {
        return std::nullopt;
    }
    AreaScaler scaler(facts.components, facts.width, facts.height, size.width, size.height);
    const auto width = static_cast<std::size_t>(facts.width);
    const auto components = static_cast<std::size_t>(facts.components);
    std::vector<std::uint8_t> expanded(facts.palette.empty() ? 0 : width * components);
    const auto add = [&](const std::uint8_t *row) {
        if (!facts.palette.empty()) {
            for (std::size_t x = 0; x < width; ++x) {
                std::copy_n(facts.palette.data() + row[x] * components, components,
                            expanded.data() + x * components);
            }
            row = expanded.data();
        }
        colours->addRow(row, facts.width);
        scaler.addRow(row);
    };
    const std::size_t stride = facts.palette.empty() ? width * components : width;
    if (!readSamples(image, stride, facts.height, m_cancel, add)) {
        return std::nullopt;
    }
    return scaler.takeResult();
}

std::optional<NewImage> ImageShrinker::shrinkSamples(QPDFObjectHandle image,
                                                     const ImageFacts &facts,
                                                     const ImageUse &use) const
{
    const Size size = sizeFor(facts, use, m_aims.dotsPerInch);
    const qsizetype before = storedBytes(image);
    const double pixels = static_cast<double>(size.width) * size.height;
    if (before < kLeastBytes || static_cast<double>(before) < kLeastJpeg * pixels) {
        return std::nullopt;
    }
    ColourCount colours(facts.components, facts.components == 1 ? kFewGreys : kFewColours);
    const std::optional<Raster> raster = scaledSamples(image, facts, size, &colours);
    if (!raster) {
        return std::nullopt;
    }
    const bool isSmaller = size.width < facts.width || size.height < facts.height;
    const qsizetype quickly = deflated(samplesIn(*raster), Effort::Least, m_cancel).size();
    if (!colours.areMany() && static_cast<double>(quickly) < kBusy * pixels) {
        return isSmaller ? shrinkDrawing(image, facts, use) : std::nullopt;
    }
    if (!use.isSoftMask) {
        JpegSettings settings;
        settings.quality = m_aims.quality;
        settings.isSubsampled = m_aims.isSubsampled;
        settings.isTransformed = facts.isColour;
        const QByteArray jpeg = newJpeg(*raster, settings, m_cancel);
        if (isWorthwhile(jpeg.size(), before) && isFaithful(jpeg, *raster)) {
            if (quickly > kClearly * jpeg.size()) {
                return newImage(jpeg, *raster, true);
            }
            // What takes little more without loss is better so.
            NewImage exact = packed(*raster, m_cancel);
            return exact.data.isEmpty() || isWorthwhile(jpeg.size(), exact.data.size())
                       ? newImage(jpeg, *raster, true)
                       : exact;
        }
    }
    return isSmaller ? packedIfWorthwhile(*raster, before) : std::nullopt;
}

std::optional<NewImage> ImageShrinker::shrinkDrawing(QPDFObjectHandle image,
                                                     const ImageFacts &facts,
                                                     const ImageUse &use) const
{
    const Size size = sizeFor(facts, use, kDrawingFactor * m_aims.dotsPerInch);
    if (size.width == facts.width && size.height == facts.height) {
        return std::nullopt;
    }
    ColourCount colours(facts.components, 1);
    const std::optional<Raster> raster = scaledSamples(image, facts, size, &colours);
    return raster ? packedIfWorthwhile(*raster, storedBytes(image)) : std::nullopt;
}

std::optional<NewImage> ImageShrinker::packedIfWorthwhile(const Raster &raster,
                                                          qsizetype before) const
{
    NewImage exact = packed(raster, m_cancel);
    return isWorthwhile(exact.data.size(), before) ? std::optional(std::move(exact)) : std::nullopt;
}

bool ImageShrinker::isFaithful(const QByteArray &jpeg, const Raster &raster) const
{
    double sum = 0;
    int y = 0;
    const bool isRead = readJpeg(jpeg, 1, m_cancel, [&](const std::uint8_t *row) {
        const std::uint8_t *original = raster.row(y);
        long long inRow = 0;
        for (std::size_t i = 0; i < raster.stride(); ++i) {
            const int difference = row[i] - original[i];
            inRow += static_cast<long long>(difference) * difference;
        }
        sum += static_cast<double>(inRow);
        ++y;
        return true;
    });
    const double mean = sum / static_cast<double>(raster.samples.size());
    return isRead && 10.0 * std::log10(255.0 * 255.0 / std::max(mean, 1e-6)) >= m_aims.leastRatio;
}

} // namespace pdfcore
