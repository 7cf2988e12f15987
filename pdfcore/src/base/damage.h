// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

namespace pdfcore {

/// What is done about a file whose cross-reference table is of no use.
enum class Damage {
    Repair,
    Refuse,
};

} // namespace pdfcore
