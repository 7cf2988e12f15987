// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// What an image (ISO 32000-2, 8.9.5) whose samples may be changed says about itself.
struct ImageFacts
{
    int width = 0;
    int height = 0;
    int components = 0;
    bool isJpeg = false; ///< The last of its filters; else its samples can be had as they are.
    /// Its three or four components are such that brightness says most.
    bool isColour = false;
    /// The colours that its samples are numbers of, 256 of `components` bytes; empty for none.
    std::vector<std::uint8_t> palette;
};

/// Nothing for an image that shows something else, or fails, when its samples change a little: a
/// stencil, one with a colour key, of other than 8 bits, whose samples are numbers of colours in
/// any but the usual order; and for one whose samples are compressed in a way that is best left, or
/// cannot be told.
std::optional<ImageFacts> imageFacts(QPDFObjectHandle image);

/// The colour space in which the colours of a palette are; the colour space itself for any other.
QPDFObjectHandle baseOf(QPDFObjectHandle colourSpace);

/// The names of the filters of a stream, in the order in which they decode; nothing when they make
/// no sense.
std::optional<std::vector<std::string>> filtersOf(QPDFObjectHandle stream);

/// Whether the data of a stream are a JPEG picture, after other filters are undone that any data
/// may have been through.
bool endsInJpeg(const std::vector<std::string> &filters);

/// Whether all filters are such as any data may have been through.
bool areGeneral(const std::vector<std::string> &filters);

/// The parameters of the last filter of a stream, or null.
QPDFObjectHandle lastParameters(QPDFObjectHandle stream);

/// The data of a stream as they stand in the file, decrypted.
QByteArray rawData(QPDFObjectHandle stream);

/// The data of a stream as they are before the last of its filters is undone.
QByteArray dataOfLastFilter(QPDFObjectHandle stream);

} // namespace pdfcore
