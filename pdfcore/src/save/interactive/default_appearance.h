// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <map>
#include <string>

namespace pdfcore {

/// A default appearance string, which is a piece of content, with other names of resources. What
/// stands between the names stays as it is.
std::string renamedAppearance(const std::string &appearance,
                              const std::map<std::string, std::string> &names);

} // namespace pdfcore
