// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/imported_picture.h"

#include <QSize>

#include <memory>

namespace pdfcore {

/// Compresses rows with libpng into what /FlateDecode with the predictors of PNG takes (ISO
/// 32000-2, 7.4.4.4): the image data of a PNG file without the file around it.
///
/// For one thread; throws PictureFailure, and whatever `sink` throws.
class PngRowWriter final
{
public:
    /// How the samples of neighbours are related.
    enum class Relation {
        Near, ///< They are much alike, as in photographs.
        None, ///< They are numbers of colours.
    };

    /// @param channels  Samples of one pixel, 1 or 3.
    PngRowWriter(QSize pixels, int channels, int bits, Relation relation, ByteSink sink);
    ~PngRowWriter();
    PngRowWriter(const PngRowWriter &) = delete;
    PngRowWriter &operator=(const PngRowWriter &) = delete;

    /// Takes the next row; its bits are packed, and 16 bits have the higher byte first.
    void writeRow(const unsigned char *row);
    /// To be called after the last row.
    void finish();

private:
    struct Library;

    bool start(QSize pixels, int channels, int bits, Relation relation);
    bool compressRow(const unsigned char *row);
    bool compressRest();
    void check(bool isDone);

    std::unique_ptr<Library> m_library;
};

} // namespace pdfcore
