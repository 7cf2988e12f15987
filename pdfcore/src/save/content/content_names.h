// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// The names that content streams (ISO 32000-2, 7.8.2) of a document use as operands. QPDF's own
/// search for unused resources knows fonts and XObjects only and gives up on odd content.
class ContentNames
{
public:
    /// The names in a stream, with their slashes. Null when it cannot be told: the stream is
    /// damaged, or there is more content than is worth reading.
    const std::set<std::string> *namesIn(QPDFObjectHandle stream);

private:
    using Names = std::optional<std::set<std::string>>;

    Names readNames(QPDFObjectHandle stream);

    std::size_t m_bytesRead = 0;
    std::map<QPDFObjGen, Names> m_known;
};

} // namespace pdfcore
