// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

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
    bool isJpeg = false; ///< Else its samples can be had as they are.
    /// Its three or four components are such that brightness says most.
    bool isColour = false;
};

/// Nothing for an image that shows something else, or fails, when its samples change a little: a
/// stencil, one with a colour key, of other than 8 bits, whose samples are numbers of colours; and
/// for one whose samples are compressed in a way that is best left, or cannot be told.
std::optional<ImageFacts> imageFacts(QPDFObjectHandle image);

/// The names of the filters of a stream, in the order in which they decode; nothing when they make
/// no sense.
std::optional<std::vector<std::string>> filtersOf(QPDFObjectHandle stream);

/// The parameters of the filter of a stream that has one filter, or null.
QPDFObjectHandle onlyParameters(QPDFObjectHandle stream);

/// The data of a stream as they stand in the file, decrypted.
QByteArray rawData(QPDFObjectHandle stream);

} // namespace pdfcore
