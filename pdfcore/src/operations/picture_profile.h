// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace pdfcore {

/// Whether an ICC profile can stand for the colours of a picture with `components` components (1, 3
/// or 4): it can be read and converts, is of a class that ICCBased takes (ISO 32000-2, 8.6.5.5) and
/// of the colour space that so many components have in pictures.
bool isProfileFor(const QByteArray &profile, int components);

} // namespace pdfcore
