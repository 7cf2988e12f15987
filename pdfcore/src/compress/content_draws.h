// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// A transformation (ISO 32000-2, 8.3.4): x' = a x + c y + e, y' = b x + d y + f.
struct Transform
{
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double e = 0;
    double f = 0;

    /// First this one, then the other.
    [[nodiscard]] Transform then(const Transform &next) const;
};

/// The transformation that an array of six numbers stands for; the identity for anything else.
Transform transformOf(QPDFObjectHandle array);

/// What a content stream uses by name, and how it is transformed there.
struct Draw
{
    enum class Kind {
        XObject,       ///< By Do.
        GraphicsState, ///< By gs.
    };
    Kind kind = Kind::XObject;
    std::string name; ///< With its slash.
    Transform transform;
};

/// Reads content streams for what they draw.
class ContentDraws
{
public:
    explicit ContentDraws(PdfCancelFlag cancel)
        : m_cancel(std::move(cancel))
    {}

    /// What a page, whose content may be divided, or a form, a pattern or the like draws in its own
    /// coordinates. Nothing when it cannot be read, is far too long, or the work was cancelled.
    std::optional<std::vector<Draw>> ofPage(QPDFObjectHandle page);
    std::optional<std::vector<Draw>> ofStream(QPDFObjectHandle stream);

private:
    bool append(QPDFObjectHandle stream, Pipeline &to);

    PdfCancelFlag m_cancel;
    std::size_t m_bytesRead = 0;
};

} // namespace pdfcore
