// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <map>
#include <string>

namespace pdfcore {

/// A default appearance string, which is a piece of content (ISO 32000-2, 12.7.4.3), with other
/// names of resources. What stands between the names stays as it is.
///
/// QPDF does the same where QPDFAcroFormDocumentHelper copies annotations, but for nobody else.
std::string renamedAppearance(const std::string &appearance,
                              const std::map<std::string, std::string> &names);

} // namespace pdfcore
